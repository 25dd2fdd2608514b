#include "transfer/Transfer.h"

#include "base/Messages.h"
#include "messages/MessageAdvice.h"
#include "transfer/ProgramComment.h"

#include <algorithm>
#include <cassert>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

// The size of what arrives is not known, so the range of the bar doubles whenever the upload passes it.
constexpr std::int64_t rangeOfUpload = 10'000;
constexpr std::int64_t rangeOfUploadByHand = 1'000'000;

// How long an upload waits at its end for another program to close the older file.
constexpr auto longestWaitForName = 2s;
constexpr auto pauseBetweenAttempts = 100ms;

// For the checksum of a download, in bytes: in one pass, and at its end. They take about 0.3 and 20 ms.
constexpr std::size_t mostSummedAtOnce = 64 * 1024;
constexpr std::size_t mostSummedAtEnd = 4 * 1024 * 1024;

// Later lines of a program describe its steps, not the part.
constexpr std::int64_t linesWithComment = 60;

bool IsUploadState(TransferState state) {
    switch (state) {
    case TransferState::Uploading:
    case TransferState::UploadCouldNotOpen:
    case TransferState::UploadErrors:
    case TransferState::UploadCancelled:
    case TransferState::UploadCompleted:
        return true;
    default:
        return false;
    }
}

KelText Describe(const LineList::Fault& fault, std::size_t longestLineAllowed) {
    const KelText number = ToText(fault.lineNumber);
    switch (fault.kind) {
    case LineList::Fault::Kind::LongLine:
        return Filled(text::transferReason::longLine, {number, ToText(static_cast<std::int64_t>(longestLineAllowed))});
    case LineList::Fault::Kind::StrayReturn:
        return Filled(text::transferReason::strayReturn, {number});
    case LineList::Fault::Kind::Utf16:
        break;
    }
    return text::transferReason::utf16;
}

}

Transfer::Transfer(TransferParts parts)
    : parts(std::move(parts)),
      newNames(this->parts.clock),
      pause(this->parts.timers, this->parts.clock, "Transfer::Pause", pauseBetweenAttempts, Timer::Kind::OneShot,
            [this] { std::exchange(afterPause, {})(); }) {}

// The one end of every transfer, whatever ends it.
KelText Transfer::Release() {
    pause.Stop();
    afterPause = {};
    KelText whole = FromPath(upload.GiveUp());
    source.Close();
    lines.Clear();
    image.Clear();
    linesStored = linesTotal = 0;
    comment.clear();
    dialog = EndDialog::None;
    bar.position = 0;
    return whole;
}

KelText Transfer::ReleaseFor(TransferState newState) {
    // The bar stays full at the end of a download by hand: its last block is still leaving.
    const bool staysFull = newState == TransferState::DownloadCompleted && image.Position() == image.Length() &&
                           dialog == EndDialog::Download;
    KelText whole = Release();
    if (staysFull)
        bar.position = bar.range;
    return whole;
}

// None if the new state ends nothing and refuses nothing.
std::optional<TransferOutcome> Transfer::OutcomeOf(TransferState newState) const {
    switch (newState) {
    case TransferState::Downloading:
    case TransferState::Uploading:
    case TransferState::DownloadWaiting:
    case TransferState::DownloadPreparation:
        return std::nullopt;
    case TransferState::DownloadCompleted:
    case TransferState::UploadCompleted:
        return TransferOutcome::Completed;
    case TransferState::DownloadCouldNotOpen:
    case TransferState::UploadCouldNotOpen:
    case TransferState::FileFormatError:
        return TransferOutcome::Refused;
    case TransferState::DownloadErrors:
    case TransferState::UploadErrors:
        return IsUnderWay() || IsPending() ? TransferOutcome::Failed : TransferOutcome::Refused;
    default:
        break;
    }
    if (!IsUnderWay() && !IsPending())
        return std::nullopt;
    const bool isCancel = newState == TransferState::DownloadCancelled || newState == TransferState::UploadCancelled;
    return isCancel ? TransferOutcome::Cancelled : TransferOutcome::Failed;
}

TransferRecord Transfer::RecordOf(TransferOutcome outcome, TransferState newState) {
    TransferRecord record;
    record.number = name.fileName;
    record.path = name.path;
    record.direction =
        IsUploadState(IsUnderWay() ? state : newState) ? TransferDirection::FromMachine : TransferDirection::ToMachine;
    record.outcome = outcome;
    record.begin = record.end = std::chrono::system_clock::now();
    record.repeats = quality.repeats;
    record.damaged = quality.damaged;
    record.driverErrors = quality.driverErrors;
    if (outcome == TransferOutcome::Refused)
        return record;
    record.begin -= std::chrono::duration_cast<TransferRecord::Time::duration>(parts.clock.Now() - requestedAt);
    if (!IsUnderWay())
        return record;
    record.byteCount =
        outcome == TransferOutcome::Completed && state == TransferState::Downloading ? bytesTotal : FileBytesDone();
    record.bytesTotal = state == TransferState::Downloading ? bytesTotal : 0;
    record.lineCount = LinesDone();
    record.linesTotal = linesTotal;
    record.sha256 = state == TransferState::Uploading ? upload.Checksum() : ChecksumOf(record.byteCount);
    return record;
}

// Empty if it takes too long for the thread of the line: no usual file leaves so much for the end.
std::string Transfer::ChecksumOf(std::int64_t byteCount) {
    if (!Sum(byteCount, mostSummedAtEnd))
        return {};
    return image.Length() > 0 ? image.Checksum() : lines.Checksum();
}

bool Transfer::Sum(std::int64_t byteCount, std::size_t most) {
    const auto end = static_cast<std::size_t>(byteCount);
    return image.Length() > 0 ? image.Sum(end, most) : lines.Sum(end, most);
}

void Transfer::FollowChecksum() {
    if (state == TransferState::Downloading)
        Sum(FileBytesDone(), mostSummedAtOnce);
}

void Transfer::Enter(TransferState newState, Urgency urgency, KelText newReason, Row row) {
    parts.thread.AssertOwned();
    // Before the counters are reset.
    std::optional<TransferRecord> ended;
    if (const auto outcome = row == Row::OfEnd ? OutcomeOf(newState) : TransferOutcome::Refused;
        row != Row::None && outcome)
        ended = RecordOf(*outcome, newState);
    const KelText whole = IsTransferring(newState) ? KelText() : ReleaseFor(newState);
    // Something has ended an upload that was waiting for its name.
    if (!whole.empty())
        newReason = Filled(text::transferReason::wholeIn,
                           {newReason.empty() ? KelTextView(text::transferReason::nameNotTaken) : newReason, whole});
    Show(newState, urgency, std::move(newReason), std::move(ended));
}

void Transfer::Show(TransferState newState, Urgency urgency, KelText newReason, std::optional<TransferRecord> ended) {
    isTesting = false;
    state = newState;
    reason = std::move(newReason);
    parts.observer.OnStateChanged(urgency);
    if (!ended)
        return;
    ended->reason = reason;
    if (!unsaidReason.empty())
        ended->reason = std::exchange(unsaidReason, {});
    if (newState == TransferState::DownloadCouldNotOpen && reason.empty())
        ended->reason = text::transferReason::noSuchFile;
    parts.observer.OnEnded(std::move(*ended));
}

void Transfer::Begin(TransferState newState, EndDialog newDialog, std::int64_t range, Urgency urgency) {
    bytesDone = 0;
    bytesTotal = range;
    bar = {0, range};
    dialog = newDialog;
    Enter(newState, urgency);
}

void Transfer::Wait(Urgency urgency) {
    Enter(TransferState::Waiting, urgency);
}

void Transfer::ShowLinkTest() {
    Enter(TransferState::LinkTest, Urgency::NextTick);
}

void Transfer::ShowOverrun() {
    // At once: the next read ends the state before any tick could show it.
    Enter(TransferState::Overrun, Urgency::AtOnce);
}

void Transfer::EndOverrun() {
    if (state == TransferState::Overrun)
        Enter(TransferState::Waiting, Urgency::NextTick);
}

void Transfer::BeginLoopback() {
    Enter(TransferState::Waiting, Urgency::AtOnce);
    isTesting = true;
}

void Transfer::EndLoopback(bool hasReturned) {
    if (isTesting)
        Enter(hasReturned ? TransferState::LoopbackSuccess : TransferState::LoopbackFailure, Urgency::AtOnce);
}

void Transfer::ShowMissingServer() {
    Enter(TransferState::ClientCannotFindServer, Urgency::NextTick);
}

void Transfer::SetName(TransferName newName) {
    parts.thread.AssertOwned();
    name = std::move(newName);
    parts.observer.OnNamed(name);
}

void Transfer::RestoreRequest(Request request) {
    SetName(std::move(request.name));
    requestedAt = request.at;
    quality = request.quality;
}

void Transfer::AwaitDownload() {
    bytesDone = 0;
    Enter(TransferState::DownloadWaiting, Urgency::NextTick);
}

void Transfer::PrepareDownload() {
    Enter(TransferState::DownloadPreparation, Urgency::NextTick);
}

void Transfer::ContinueAfter(Clock::Duration duration, std::function<void()> next) {
    afterPause = std::move(next);
    pause.SetPeriod(duration);
    pause.Start();
}

// Ends the transfer unless the file is as it was when it was opened.
bool Transfer::IsSourceUnchanged() {
    const auto unchanged = source.CheckUnchanged();
    if (!unchanged)
        End(TransferState::DownloadCouldNotOpen, unchanged.Reason().text);
    return static_cast<bool>(unchanged);
}

// Ends the transfer unless the controller can take the file.
bool Transfer::LoadLines(std::size_t longestLineAllowed) {
    if (const auto opened = source.Open(ToPath(name.path), parts.linkedFolders); !opened) {
        End(TransferState::DownloadCouldNotOpen, opened.Reason().text);
        return false;
    }
    const auto loaded = lines.Load(source.File(), parts.isClosing, longestLineAllowed);
    if (!loaded) {
        End(TransferState::DownloadCouldNotOpen, loaded.Reason().text);
        return false;
    }
    // Before the fault: half a file may have one that the whole file lacks.
    if (!IsSourceUnchanged())
        return false;
    const std::optional<LineList::Fault>& fault = *loaded;
    if (!fault)
        return true;
    if (fault->isLongerThanText)
        parts.observer.ShowMessage(WithAdvice(
            MessageKind::NotAscii, {text::box::notAscii, text::box::errorCaption, okOnly | iconExclamation}));
    // A line that is cut, split, or ended by a byte of its own would make the machine cut something else.
    End(TransferState::FileFormatError, Describe(*fault, longestLineAllowed));
    return false;
}

void Transfer::StartDownload() {
    source.Close();
    linesTotal = lines.LinesTotal();
    comment = FirstComment(lines.Text());
    Begin(TransferState::Downloading, EndDialog::None, static_cast<std::int64_t>(lines.FileSize()), Urgency::NextTick);
}

void Transfer::BeginDownload(std::size_t longestLineAllowed, Completion completion) {
    if (!LoadLines(longestLineAllowed)) {
        completion(false);
    } else if (!source.NeedsSecondLook()) {
        StartDownload();
        completion(true);
    } else {
        ContinueAfter(SourceFile::secondLookAfter, [this, completion = std::move(completion)] {
            const bool isUnchanged = IsSourceUnchanged();
            if (isUnchanged)
                StartDownload();
            completion(isUnchanged);
        });
    }
}

void Transfer::NoteRequest() {
    quality = {};
    requestedAt = parts.clock.Now();
}

std::int64_t Transfer::LinesDone() const {
    return state == TransferState::Uploading ? linesStored : std::max(lines.LinesTaken(), image.LinesTaken());
}

std::int64_t Transfer::FileBytesDone() const {
    if (state != TransferState::Downloading)
        return bytesDone;
    return static_cast<std::int64_t>(std::max(lines.BytesTaken(), image.Position()));
}

void Transfer::CountSent(std::int64_t byteCount) {
    assert(state == TransferState::Downloading);
    bytesDone += byteCount;
    bar = {bytesDone, bytesTotal};
}

bool Transfer::BeginDownloadByHand(const TransferName& newName) {
    assert(!IsUnderWay());
    NoteRequest();
    Release();
    SetName({newName.path, newName.fileName, {}});
    Result<> loaded = source.OpenPicked(ToPath(name.path));
    if (loaded)
        loaded = image.Load(source.File(), parts.isClosing);
    if (!loaded) {
        End(TransferState::DownloadCouldNotOpen, loaded.Reason().text);
        return false;
    }
    if (!IsSourceUnchanged())
        return false;
    source.Close();
    SetName(newName);
    const std::string_view content = image.Content();
    linesTotal = std::count(content.begin(), content.end(), '\n');
    comment = FirstComment(content);
    Begin(TransferState::Downloading, EndDialog::Download, static_cast<std::int64_t>(image.Length()), Urgency::AtOnce);
    return true;
}

std::span<const std::uint8_t> Transfer::NextBlock(std::size_t byteCount, bool upToLineEnd) {
    return image.Next(byteCount, upToLineEnd);
}

EndDialog Transfer::Dialog() const {
    if (awaited)
        return EndDialog::Upload;
    return IsUnderWay() ? dialog : EndDialog::None;
}

void Transfer::CancelAwaitedUpload(KelText newReason) {
    assert(awaited);
    TransferName waiting = std::move(*std::exchange(awaited, std::nullopt));
    if (IsUnderWay() || IsPending())
        return;
    NoteRequest();
    SetName({waiting.path, waiting.fileName, {}});
    End(TransferState::UploadCancelled, std::move(newReason));
}

// The file of the upload that takes its place is open already, so nothing is released.
void Transfer::EndReplaced(const Request& waiting) {
    assert(state == TransferState::DownloadWaiting);
    Request next = PresentRequest();
    RestoreRequest(waiting);
    Show(TransferState::DownloadErrors, Urgency::AtOnce, text::transferReason::newRequest,
         RecordOf(TransferOutcome::Failed, TransferState::DownloadErrors));
    RestoreRequest(std::move(next));
}

bool Transfer::IsFlooded() {
    return parts.settings.newFilesPerHour > 0 && newNames.Total() >= parts.settings.newFilesPerHour;
}

// Told once for each flood: thousands of equal rows would drown what the history is read for.
void Transfer::RefuseFlood() {
    const bool isTold = std::exchange(isFloodTold, true);
    Enter(TransferState::UploadCouldNotOpen, isTold ? Urgency::NextTick : Urgency::AtOnce,
          Filled(text::transferReason::flood, {ToText(parts.settings.newFilesPerHour)}),
          isTold ? Row::None : Row::OfEnd);
}

bool Transfer::BeginUpload(const std::optional<Request>& waiting) {
    assert(!upload.IsOpen());
    if (awaited)
        SetName(*awaited);
    Release();
    const std::filesystem::path path = ToPath(name.path);
    // A user who awaits a file has named it.
    const bool isNewName = !awaited && UploadFile::IsNewName(path);
    if (isNewName && IsFlooded()) {
        RefuseFlood();
        return false;
    }
    if (const auto begun = upload.Begin(path, UploadFile::Content::Text); !begun) {
        End(TransferState::UploadCouldNotOpen, begun.Reason().text);
        return false;
    }
    if (isNewName) {
        newNames.Add();
        isFloodTold = false;
    }
    if (waiting)
        EndReplaced(*waiting);
    const bool isByHand = std::exchange(awaited, std::nullopt).has_value();
    Begin(TransferState::Uploading, isByHand ? EndDialog::Upload : EndDialog::None, rangeOfUpload, Urgency::AtOnce);
    return true;
}

bool Transfer::BeginUploadByHand(const TransferName& newName) {
    assert(!IsUnderWay());
    NoteRequest();
    Release();
    SetName({newName.path, newName.fileName, {}});
    if (const auto begun = upload.Begin(ToPath(name.path), UploadFile::Content::Bytes); !begun) {
        End(TransferState::UploadCouldNotOpen, begun.Reason().text);
        return false;
    }
    SetName(newName);
    Begin(TransferState::Uploading, EndDialog::Upload, rangeOfUploadByHand, Urgency::AtOnce);
    return true;
}

bool Transfer::Store(std::string_view bytes) {
    assert(state == TransferState::Uploading);
    // The sender has ended the file, and its name is being given.
    if (pause.IsRunning()) {
        End(TransferState::UploadErrors, text::transferReason::lineAfterEnd);
        return false;
    }
    const auto stored = upload.Store(bytes);
    bytesDone = static_cast<std::int64_t>(upload.BytesStored());
    if (!stored) {
        End(TransferState::UploadErrors, stored.Reason().text);
        return false;
    }
    if (comment.empty() && linesStored < linesWithComment)
        comment = FirstComment(bytes);
    linesStored += std::count(bytes.begin(), bytes.end(), '\n');
    if (bytesDone > bytesTotal)
        bytesTotal += bytesTotal;
    bar = {bytesDone, bytesTotal};
    return true;
}

void Transfer::CompleteUpload(Completion completion) {
    assert(state == TransferState::Uploading);
    if (pause.IsRunning())
        return;
    bytesDone = static_cast<std::int64_t>(upload.BytesStored());
    TryToComplete(parts.clock.Now() + longestWaitForName, completion);
}

// The sender forgets the file once its end is acknowledged, so it is on the disk, under its name, by then.
void Transfer::TryToComplete(Clock::TimePoint deadline, const Completion& completion) {
    const auto completed = upload.Complete(parts.settings.replacedFilesKept);
    if (!completed && completed.Reason().isBusy && parts.clock.Now() < deadline) {
        ContinueAfter(pauseBetweenAttempts, [this, deadline, completion] { TryToComplete(deadline, completion); });
        return;
    }
    if (!completed)
        End(TransferState::UploadErrors, completed.Reason().text);
    else
        End(TransferState::UploadCompleted,
            *completed == UploadFile::Ending::OlderStays ? text::transferReason::olderStays : u"");
    if (completion)
        completion(static_cast<bool>(completed));
}

bool Transfer::EndWithErrors(KelText newReason) {
    const bool isDownload = state == TransferState::Downloading || IsPending();
    if (!isDownload && state != TransferState::Uploading)
        return false;
    End(isDownload ? TransferState::DownloadErrors : TransferState::UploadErrors, std::move(newReason));
    return true;
}

void Transfer::End(TransferState newState, KelText newReason) {
    assert(!IsTransferring(newState));
    Enter(newState, Urgency::AtOnce, std::move(newReason));
}

void Transfer::EndUnexplained(TransferState newState, KelText recordedReason) {
    unsaidReason = std::move(recordedReason);
    End(newState);
}

void Transfer::Refuse(TransferState newState, KelText newReason) {
    assert(!IsTransferring(newState));
    Enter(newState, Urgency::AtOnce, std::move(newReason), Row::OfRefusal);
}

}
