#include "engine/EngineLogs.h"

#include "logging/DiagnosticsReport.h"

namespace tarvin {

EngineLogs::EngineLogs(const Clock& clock, LineTrace& lineTrace, DownloadWindow& shownIn)
    : window(shownIn), commsLog(clock, lastLogged), activityLog(lastLogged), recorder(lineTrace, commsLog) {}

void EngineLogs::Complain() {
    window.ShowMessage({u"Unable to write to log file", u"Problem", okOnly | iconExclamation});
}

void EngineLogs::StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings,
                               std::uint64_t sizeLimit) {
    // What waits belongs to the run that ends here.
    recorder.FlushPending();
    (void)commsLog.Flush();
    if (!(sizeLimit == 0 ? commsLog.Open(path) : commsLog.OpenRolling(path, sizeLimit))) {
        Complain();
        return;
    }
    report = DiagnosticsReport(settings);
    commsLog.LogLine("Start of logging", false);
    LogReport();
}

void EngineLogs::LogReport() {
    for (const std::string& line : report)
        commsLog.LogLine(line, false);
}

void EngineLogs::EndCommsLog(std::string_view lastLine) {
    if (!commsLog.IsOpen())
        return;
    recorder.FlushPending();
    commsLog.LogLine(lastLine, false);
    if (!commsLog.Close())
        Complain();
}

void EngineLogs::LogStatusChange(const DownloadSettings& settings, const KelText& statusText,
                                 const KelText& programName) {
    if (settings.writeLog != 0)
        activityLog.LogStatusChange(ToPath(settings.logFile), statusText, programName);
}

void EngineLogs::Flush() {
    if (!commsLog.Flush())
        Complain();
    // Whoever is sent the newer file alone wants to know how the link was set up, too.
    if (commsLog.TakeRolledOver())
        LogReport();
    if (!activityLog.Flush())
        Complain();
}

}
