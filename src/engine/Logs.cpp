#include "engine/Logs.h"

#include "base/Messages.h"
#include "logging/DiagnosticsReport.h"

#include <utility>

namespace tarvin {

Logs::Logs(const Clock& clock, LineTrace& trace, EngineEvents& events)
    : clock(clock),
      events(events),
      commsLog(clock, lastLogged),
      activityLog(clock, lastLogged),
      recorder(trace, commsLog) {}

void Logs::ShowProblem(const std::filesystem::path& path, const Error& reason) {
    const KelText problem = Filled(text::box::cannotWriteLog, {FromPath(path), reason.text});
    events.ShowMessage({problem, text::box::problemCaption, okOnly | iconExclamation});
}

void Logs::StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit) {
    // Waiting text belongs to the log that ends here.
    recorder.FlushPending();
    (void)commsLog.Flush();
    gap.reset();
    lastGapEnd.reset();
    report = DiagnosticsReport(settings);
    const auto opened = sizeLimit == 0 ? commsLog.Open(path) : commsLog.OpenRolling(path, sizeLimit);
    if (opened) {
        LogStart();
        return;
    }
    ShowProblem(path, opened.Reason());
    if (sizeLimit > 0 && !commsLog.IsOpen())
        gap = Gap{opened.Reason().text, clock.Now(), clock.Now(), sizeLimit, path};
}

void Logs::LogStart() {
    commsLog.LogLine(text::trace::startOfLogging, false);
    LogReport();
}

void Logs::LogReport() {
    for (const std::string& line : report)
        commsLog.LogLine(line, false);
}

void Logs::EndCommsLog(std::string_view lastLine) {
    gap.reset();
    if (!commsLog.IsOpen())
        return;
    recorder.FlushPending();
    commsLog.LogLine(lastLine, false);
    if (const auto closed = commsLog.Close(); !closed)
        ShowProblem(commsLog.Path(), closed.Reason());
}

void Logs::LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName,
                           bool force) {
    if (settings.writeLog != 0)
        activityLog.LogStatusChange(ToPath(settings.logFile), statusText, fileName, force);
}

void Logs::Flush() {
    if (gap && clock.Now() - gap->lastAttempt >= logRetryPeriod)
        EndGap();
    FlushCommsLog();
    if (const auto flushed = activityLog.Flush(); !flushed)
        ShowProblem(activityLog.Path(), flushed.Reason());
}

void Logs::Close() {
    EndCommsLog(text::trace::programEnd);
    if (const auto flushed = activityLog.Flush(true); !flushed)
        ShowProblem(activityLog.Path(), flushed.Reason());
}

void Logs::FlushCommsLog() {
    const auto flushed = commsLog.Flush();
    // Each new file repeats the line settings: a reader may receive only this file.
    if (commsLog.TakeRolledOver())
        LogReport();
    if (flushed)
        return;
    const auto now = clock.Now();
    gap = Gap{flushed.Reason().text, now, now};
    // A full disk takes a line now and then. It is one trouble, told once.
    if (!lastGapEnd || now - *lastGapEnd >= logRetryPeriod)
        ShowProblem(commsLog.Path(), flushed.Reason());
}

void Logs::EndGap() {
    gap->lastAttempt = clock.Now();
    const auto opened = gap->sizeLimit ? commsLog.OpenRolling(gap->path, *gap->sizeLimit) : commsLog.Resume();
    if (!opened)
        return;
    const Gap ended = std::move(*gap);
    gap.reset();
    lastGapEnd = clock.Now();
    if (ended.sizeLimit)
        LogStart();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(*lastGapEnd - ended.since);
    commsLog.LogLine(ToUtf8(Filled(text::trace::logGap, {ToText(seconds.count()), ended.reason})), true);
}

}
