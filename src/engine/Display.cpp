#include "engine/Display.h"

#include "base/Messages.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto tickPeriod = 100ms;
constexpr auto holdWorthTelling = 3s;
// Each tick wakes the processor, and a link may be idle for days.
constexpr auto quietPeriod = 500ms;
constexpr auto announcementPeriod = 1min;
constexpr std::size_t mostRecent = 20;

KelText WithReason(const KelText& line, const KelText& path, const KelText& reason) {
    if (reason.empty())
        return line;
    // A status without a file ends with a blank, and some end with a full stop. So do files without an extension.
    KelTextView start = Trimmed(line);
    if (start.ends_with(u'.') && !start.ends_with(path))
        start.remove_suffix(1);
    return KelText(start) + u": " + reason;
}

}

Display::Display(const Sources& sources, EngineEvents& events, Logs& logs, TimerQueue& timers, const Clock& clock)
    : sources(sources),
      events(events),
      logs(logs),
      clock(clock),
      tick(timers, clock, "DownloadApp::DisplayStatus", tickPeriod, Timer::Kind::Repeating, [this] { OnTick(); }) {}

void Display::Start() {
    FollowAt(tickPeriod);
    Show();
}

void Display::FollowAt(Clock::Duration period) {
    isQuiet = period == quietPeriod;
    tick.SetPeriod(period);
    tick.Start();
}

void Display::OnTick() {
    if (!Show())
        FollowAt(quietPeriod);
}

void Display::OnStateChanged(Urgency urgency) {
    // The end of a transfer, and a refusal, is an event of its own even if the one before had the same text.
    if (sources.transfer.State() != TransferState::Overrun)
        loggedLine.clear();
    if (urgency == Urgency::AtOnce)
        Show();
}

void Display::OnNamed(const TransferName& name) {
    if (!name.title.empty())
        next.caption = sources.machineName + name.title;
}

void Display::ShowLink() {
    next.linkTitle = sources.line.Title();
    next.hasLink = sources.line.IsLinked();
    if (next.port != sources.settings.port)
        next.hasHadLink = false;
    next.hasHadLink |= next.hasLink;
    next.port = sources.settings.port;
    if (next.hasLink)
        next.linkLostSince.reset();
    else if (!next.linkLostSince)
        next.linkLostSince = clock.Now();
    next.caption = next.linkTitle;
    Publish();
}

void Display::OnEnded(TransferRecord record) {
    record.machine = sources.machineName;
    logs.AddToHistory(record);
    TransferRecords records = *next.recent;
    // A whole transfer makes good what has failed before.
    if (record.outcome == TransferOutcome::Completed) {
        for (TransferRecord& earlier : records)
            earlier.isSeen |= earlier.IsAbout(record.number, record.direction);
    }
    records.push_back(std::move(record));
    ShowRecent(std::move(records));
    Show();
}

void Display::ShowPastTransfers(TransferRecords past) {
    // A slow disk may bring them when this run has had transfers.
    for (TransferRecord& record : past) {
        record.isSeen |= std::any_of(next.recent->begin(), next.recent->end(), [&](const TransferRecord& later) {
            return later.outcome == TransferOutcome::Completed && later.IsAbout(record.number, record.direction);
        });
    }
    past.insert(past.end(), next.recent->begin(), next.recent->end());
    ShowRecent(std::move(past));
    Publish();
}

void Display::MarkSeen(KelTextView number, TransferDirection direction) {
    logs.MarkSeen(KelText(number), direction);
    TransferRecords records = *next.recent;
    for (TransferRecord& record : records)
        record.isSeen |= record.IsAbout(number, direction);
    ShowRecent(std::move(records));
    Publish();
}

// The oldest leave the list, except failures that a user still has to see.
void Display::ShowRecent(TransferRecords records) {
    for (auto record = records.begin(); record != records.end() && records.size() > mostRecent;)
        record = record->IsUnseenFailure() ? record + 1 : records.erase(record);
    next.recent = std::make_shared<const TransferRecords>(std::move(records));
}

void Display::ShowConversation(bool isConversation) {
    next.isConversation = isConversation;
    ShowButtons(true);
}

void Display::Announce(KelTextView announcement) {
    next.announcement = announcement;
    endOfAnnouncement = clock.Now() + announcementPeriod;
    logs.LogLine(ToUtf8(next.announcement), true);
    logs.LogStatusChange(sources.settings, next.announcement, {}, true);
    Publish();
}

void Display::ShowButtons(bool areVisible) {
    for (ActionButton* button : {&next.sendFile, &next.receiveFile, &next.test})
        button->isVisible = areVisible;
}

void Display::ShowAgain() {
    if (!Publish())
        events.SnapshotChanged(next);
}

void Display::FollowPass() {
    // News do not wait for the end of a quiet period.
    if (isQuiet && tick.IsRunning() && HasNews())
        FollowAt(tickPeriod);
}

bool Display::Show() {
    const Transfer& transfer = sources.transfer;
    // The other station. No part of the program finds one yet.
    const KelText peerName = u"Unknown";
    const StatusDescription description =
        DescribeState(transfer.State(), {transfer.Name().path, transfer.BytesDone(), transfer.BytesTotal(),
                                         sources.settings.stationName, peerName, sources.settings.serverMode != 0});
    next.transferState = transfer.State();
    next.transferPath = transfer.Name().path;
    if (description.line)
        next.statusLine = WithReason(*description.line, transfer.Name().path, transfer.Reason());
    next.quality = transfer.Quality();
    if (clock.Now() >= endOfAnnouncement)
        next.announcement.clear();
    ShowHold();
    ShowProgress();
    next.progressPosition = transfer.Bar().position;
    next.progressRange = transfer.Bar().range;
    next.lamps = PresentLamps();
    // A second transfer must not break into the first, and without one there is nothing to end.
    next.sendFile.isEnabled = next.receiveFile.isEnabled = !transfer.IsUnderWay();
    next.endDialog = transfer.Dialog();
    const bool isChanged = Publish();
    LogStatus(description);
    shownByteCount = transfer.BytesDone();
    sources.line.ClearActivity();
    return isChanged;
}

// Flow control holds and releases the line many times a minute. A hold that lasts is worth a word.
void Display::ShowHold() {
    const auto& since = sources.line.HeldUpSince();
    const LineHolds& holds = sources.line.Holds();
    KelText notice;
    next.heldSince = since && clock.Now() - *since >= holdWorthTelling ? since : std::nullopt;
    if (next.heldSince)
        notice = holds.xoff  ? text::notice::heldByXoff
                 : holds.cts ? text::notice::heldByCts
                 : holds.dsr ? text::notice::heldByDsr
                             : text::notice::takesNothing;
    if (notice == next.notice)
        return;
    next.notice = notice;
    logs.LogLine(ToUtf8(notice.empty() ? KelText(text::notice::free) : notice), true);
}

void Display::ShowProgress() {
    const Transfer& transfer = sources.transfer;
    if (!transfer.IsUnderWay())
        rate.Reset();
    if (!transfer.IsUnderWay() && !transfer.IsPending()) {
        next.progress.reset();
        next.quietSince.reset();
        return;
    }
    TransferProgress progress;
    progress.isWaiting = transfer.IsPending();
    progress.number = transfer.Name().fileName;
    progress.path = transfer.Name().path;
    progress.requestedAt = transfer.RequestedAt();
    if (transfer.State() == TransferState::Uploading)
        progress.direction = TransferDirection::FromMachine;
    if (!progress.isWaiting) {
        progress.comment = transfer.Comment();
        progress.bytesDone = transfer.FileBytesDone();
        progress.bytesTotal = transfer.State() == TransferState::Downloading ? transfer.BytesTotal() : 0;
        progress.linesDone = transfer.LinesDone();
        progress.linesTotal = transfer.LinesTotal();
        rate.Add(clock.Now(), progress.linesDone, progress.bytesDone);
        progress.linesPerSecond = rate.LinesPerSecond();
        progress.bytesPerSecond = rate.BytesPerSecond();
    }
    next.progress = std::move(progress);
    next.quietSince = sources.line.QuietSince();
}

bool Display::Publish() {
    {
        const MutexLock lock(mutex);
        if (next == latest)
            return false;
        latest = next;
    }
    events.SnapshotChanged(next);
    return true;
}

// A status is logged when it appears, not at each tick at which it stays. An overrun may appear with every read: one
// line stands for all of them.
void Display::LogStatus(const StatusDescription& description) {
    if (description.isReported && loggedLine != next.statusLine) {
        const bool force = sources.transfer.State() != TransferState::Overrun;
        const KelText& fileName = sources.transfer.Name().fileName;
        if (description.reportedBefore)
            logs.LogStatusChange(sources.settings, *description.reportedBefore, fileName, force);
        logs.LogStatusChange(sources.settings, next.statusLine, fileName, force);
        LogQuality();
    }
    loggedLine = description.isReported ? next.statusLine : KelText();
}

// One line behind that of the transfer. Nothing was worth a line if the line was clean.
void Display::LogQuality() {
    const Transfer& transfer = sources.transfer;
    if (transfer.Quality().IsClean() || transfer.State() == TransferState::Overrun)
        return;
    const KelText quality = DescribeQuality(transfer.Quality());
    logs.LogStatusChange(sources.settings, quality, transfer.Name().fileName, true);
    logs.LogLine(ToUtf8(quality), true);
}

Lamps Display::PresentLamps() const {
    const LineService::Activity& activity = sources.line.RecentActivity();
    return {activity.received, activity.transmitted, sources.line.Holds()};
}

bool Display::HasNews() const {
    if (sources.transfer.State() != next.transferState || sources.transfer.BytesDone() != shownByteCount ||
        PresentLamps() != next.lamps)
        return true;
    const MutexLock lock(mutex);
    return next != latest;
}

EngineSnapshot Display::Latest() const {
    const MutexLock lock(mutex);
    return latest;
}

}
