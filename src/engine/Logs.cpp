#include "engine/Logs.h"

#include "base/Messages.h"
#include "logging/DiagnosticsReport.h"
#include "messages/MessageAdvice.h"

#include <cassert>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

// How long the end of the program waits for the disk.
constexpr auto longestClose = 2s;
// The writer of a failed log looks this often whether its next attempt is due.
constexpr auto attemptLookPeriod = 1s;
constexpr auto deletionPeriod = 24h;

}

Logs::Logs(const Clock& clock, LineTrace& trace, EngineEvents& events, std::unique_ptr<LogFiles> files)
    : clock(clock),
      events(events),
      lines(clock),
      recorder(trace, lines),
      files(std::move(files)),
      historyPath(this->files->HistoryPath()) {}

void Logs::ShowProblem(const std::filesystem::path& path, const KelText& reason) {
    const bool isHistory = path == historyPath;
    const KelText problem =
        Filled(isHistory ? text::box::cannotWriteHistory : text::box::cannotWriteLog, {FromPath(path), reason});
    events.ShowMessage(WithAdvice(isHistory ? MessageKind::HistoryNotWritten : MessageKind::LogNotWritten,
                                  {problem, text::box::problemCaption, okOnly | iconExclamation}));
}

// The count tells news of the present log from late news of the one before.
void Logs::SwitchCommsLog(bool isOn) {
    ++switchCount;
    isStarted = isOn;
    lines.SwitchCommsLog(isOn);
}

void Logs::StartCommsLog(const std::filesystem::path& path, const DownloadSettings& settings, std::uint64_t sizeLimit) {
    // Waiting text belongs to the log that ends here.
    recorder.FlushPending();
    lines.Add(CommsLogStart{path, sizeLimit, DiagnosticsReport(settings)});
    commsLogPath = path;
    // On at once: what the line brings while a slow disk opens the file belongs to the log.
    SwitchCommsLog(true);
}

void Logs::EndCommsLog(std::string_view lastLine) {
    if (!isStarted)
        return;
    recorder.FlushPending();
    lines.Add(CommsLogEnd{std::string(lastLine)});
    SwitchCommsLog(false);
}

void Logs::LogStatusChange(const DownloadSettings& settings, const KelText& statusText, const KelText& fileName,
                           bool force) {
    if (settings.writeLog == 0)
        return;
    activityLogPath = ToPath(settings.logFile);
    lines.Add(ActivityLine{activityLogPath, statusText, fileName, LocalTimeNow(), force});
}

void Logs::OpenHistory(const KelText& machine, const DownloadSettings& settings) {
    if (!historyPath)
        return;
    historyMachine = machine;
    historySettings = &settings;
    lines.Add(HistoryStart{machine});
    DeleteOldRows();
}

void Logs::DeleteOldRows() {
    lastDeletion = clock.Now();
    if (historySettings->historyYears > 0)
        lines.Add(HistoryExpiry{historyMachine, std::chrono::system_clock::now(),
                                std::chrono::years(historySettings->historyYears)});
}

void Logs::AddToHistory(const TransferRecord& record) {
    if (historyPath)
        lines.Add(HistoryRow{std::make_shared<const TransferRecord>(record)});
}

void Logs::MarkSeen(const KelText& number, TransferDirection direction) {
    if (!historyPath)
        return;
    assert(historySettings != nullptr);
    lines.Add(HistorySeen{historyMachine, number, direction});
}

void Logs::Flush() {
    if (historySettings != nullptr && clock.Now() - lastDeletion >= deletionPeriod)
        DeleteOldRows();
    if (!lines.Records().empty() || (isFailing && clock.Now() - lastHandOver >= attemptLookPeriod))
        HandOver();
    TakeNews();
}

void Logs::HandOver() {
    if (!writer)
        writer = std::make_unique<LogWriter>(std::move(files));
    lastHandOver = clock.Now();
    writer->HandOver(lines.Records(), lastHandOver);
}

void Logs::TakeNews() {
    auto news = writer ? writer->TakeNews() : std::nullopt;
    if (!news)
        return;
    for (const LogProblem& problem : news->problems)
        ShowProblem(problem.path, problem.reason.text);
    isFailing = news->isFailing;
    if (news->pastTransfers)
        pastTransfers = std::move(news->pastTransfers);
    if (news->switchCount == switchCount)
        lines.SwitchCommsLog(news->isCommsLogOpen);
}

void Logs::Close() {
    // The few lines of the activity log first: a slow disk may take no more than these in time.
    if (writer || !lines.Records().empty())
        lines.Add(LastAttempt{});
    EndCommsLog(text::trace::programEnd);
    if (!writer && lines.Records().empty())
        return;
    HandOver();
    writer->Stop();
    const bool hasEnded = writer->WaitFor(longestClose);
    TakeNews();
    if (hasEnded)
        writer.reset();
    else
        GiveUpWriter();
}

void Logs::GiveUpWriter() {
    const auto unwritten = writer->UnwrittenLines();
    const std::filesystem::path paths[logKindCount] = {commsLogPath, activityLogPath,
                                                       historyPath.value_or(std::filesystem::path())};
    for (std::size_t log = 0; log < logKindCount; ++log) {
        if (unwritten[log] > 0)
            ShowProblem(paths[log], Filled(text::logReason::diskHangs, {ToText(unwritten[log])}));
    }
    LogWriter::Abandon(std::move(writer));
}

}
