#include "engine/Logs.h"

#include "base/Messages.h"
#include "logging/DiagnosticsReport.h"

namespace tarvin {

Logs::Logs(const Clock& clock, LineTrace& trace, EngineEvents& events)
    : events(events), commsLog(clock, lastLogged), activityLog(lastLogged), recorder(trace, commsLog) {}

void Logs::ShowProblem() {
    events.ShowMessage({text::box::cannotWriteLog, text::box::problemCaption, okOnly | iconExclamation});
}

void Logs::StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit) {
    // Waiting text belongs to the log that ends here.
    recorder.FlushPending();
    (void)commsLog.Flush();
    if (!(sizeLimit == 0 ? commsLog.Open(path) : commsLog.OpenRolling(path, sizeLimit))) {
        ShowProblem();
        return;
    }
    report = DiagnosticsReport(settings);
    commsLog.LogLine(text::trace::startOfLogging, false);
    LogReport();
}

void Logs::LogReport() {
    for (const std::string& line : report)
        commsLog.LogLine(line, false);
}

void Logs::EndCommsLog(std::string_view lastLine) {
    if (!commsLog.IsOpen())
        return;
    recorder.FlushPending();
    commsLog.LogLine(lastLine, false);
    if (!commsLog.Close())
        ShowProblem();
}

void Logs::LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName) {
    if (settings.writeLog != 0)
        activityLog.LogStatusChange(ToPath(settings.logFile), statusText, fileName);
}

void Logs::Flush() {
    if (!commsLog.Flush())
        ShowProblem();
    // Each new file repeats the line settings: a reader may receive only this file.
    if (commsLog.TakeRolledOver())
        LogReport();
    if (!activityLog.Flush())
        ShowProblem();
}

}
