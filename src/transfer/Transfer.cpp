#include "transfer/Transfer.h"

#include "base/Messages.h"

#include <cassert>
#include <utility>

namespace tarvin {

namespace {

// The size of what arrives is not known, so the range of the bar doubles whenever the upload passes it.
constexpr std::int64_t rangeOfUpload = 10'000;
constexpr std::int64_t rangeOfUploadByHand = 1'000'000;

}

Transfer::Transfer(TransferObserver& observer, const std::atomic<bool>& isClosing, const ThreadOwner& thread)
    : observer(observer), isClosing(isClosing), thread(thread) {}

void Transfer::KeepFile() {
    if (file.IsWriting())
        (void)file.Sync();
    file.Close();
}

// The one end of every transfer, whatever ends it.
void Transfer::Release() {
    file.Close();
    lines.Clear();
    image.Clear();
    dialog = EndDialog::None;
    bar.position = 0;
}

void Transfer::ReleaseFor(TransferState newState) {
    // The bar stays full at the end of a download by hand: its last block is still leaving.
    const bool staysFull = newState == TransferState::DownloadCompleted && image.Position() == image.Length() &&
                           dialog == EndDialog::Download;
    Release();
    if (staysFull)
        bar.position = bar.range;
}

void Transfer::Enter(TransferState newState, Urgency urgency, KelText newReason) {
    thread.AssertOwned();
    if (!IsTransferring(newState))
        ReleaseFor(newState);
    isTesting = false;
    state = newState;
    reason = std::move(newReason);
    observer.OnStateChanged(urgency);
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
    thread.AssertOwned();
    name = std::move(newName);
    observer.OnNamed(name);
}

void Transfer::AwaitDownload() {
    bytesDone = 0;
    Enter(TransferState::DownloadWaiting, Urgency::NextTick);
}

void Transfer::PrepareDownload() {
    Enter(TransferState::DownloadPreparation, Urgency::NextTick);
}

LineList::LoadResult Transfer::LoadLines() {
    KelFile source;
    if (!source.Open(ToPath(name.path), KelFile::Mode::ReadText))
        return LineList::LoadResult::Unreadable;
    return lines.Load(source, isClosing);
}

bool Transfer::BeginDownload(std::size_t longestLineAllowed) {
    const LineList::LoadResult loaded = LoadLines();
    if (loaded == LineList::LoadResult::Unreadable) {
        End(TransferState::DownloadCouldNotOpen);
        return false;
    }
    if (loaded == LineList::LoadResult::NotText)
        observer.ShowMessage({text::box::notAscii, text::box::errorCaption, okOnly | iconExclamation});
    // A line that is cut, split, or ended by a byte of its own would make the machine cut something else.
    if (lines.LongestLine() > longestLineAllowed || lines.HasStrayCarriageReturn()) {
        End(TransferState::FileFormatError);
        return false;
    }
    Begin(TransferState::Downloading, EndDialog::None, static_cast<std::int64_t>(lines.FileSize()), Urgency::NextTick);
    return true;
}

void Transfer::CountSent(std::int64_t byteCount) {
    assert(state == TransferState::Downloading);
    bytesDone += byteCount;
    bar = {bytesDone, bytesTotal};
}

bool Transfer::BeginDownloadByHand(const TransferName& newName) {
    assert(!IsUnderWay());
    Release();
    SetName({newName.path, newName.fileName, {}});
    KelFile source;
    if (!source.Open(ToPath(name.path), KelFile::Mode::ReadBytes) || !image.Load(source, isClosing)) {
        End(TransferState::DownloadCouldNotOpen);
        return false;
    }
    SetName(newName);
    Begin(TransferState::Downloading, EndDialog::Download, static_cast<std::int64_t>(image.Length()), Urgency::AtOnce);
    return true;
}

std::span<const std::uint8_t> Transfer::NextBlock(std::size_t byteCount) {
    return image.Next(byteCount);
}

bool Transfer::BeginUpload() {
    if (!file.Open(ToPath(name.path), KelFile::Mode::WriteText)) {
        End(TransferState::UploadCouldNotOpen);
        return false;
    }
    lines.Clear();
    // An upload by hand that the controller begins again keeps its dialog.
    const EndDialog shownDialog = state == TransferState::Uploading ? dialog : EndDialog::None;
    Begin(TransferState::Uploading, shownDialog, rangeOfUpload, Urgency::AtOnce);
    return true;
}

bool Transfer::BeginUploadByHand(const TransferName& newName) {
    assert(!IsUnderWay());
    Release();
    SetName({newName.path, newName.fileName, {}});
    if (!file.Open(ToPath(name.path), KelFile::Mode::WriteBytes)) {
        End(TransferState::UploadCouldNotOpen);
        return false;
    }
    SetName(newName);
    Begin(TransferState::Uploading, EndDialog::Upload, rangeOfUploadByHand, Urgency::AtOnce);
    return true;
}

bool Transfer::Store(std::string_view bytes) {
    assert(state == TransferState::Uploading);
    const bool isWritten = static_cast<bool>(file.Write(bytes));
    bytesDone = static_cast<std::int64_t>(file.BytesWritten());
    if (!isWritten) {
        End(TransferState::UploadErrors);
        return false;
    }
    if (bytesDone > bytesTotal)
        bytesTotal += bytesTotal;
    bar = {bytesDone, bytesTotal};
    return true;
}

bool Transfer::CompleteUpload() {
    assert(state == TransferState::Uploading);
    bytesDone = static_cast<std::int64_t>(file.BytesWritten());
    // The sender forgets the file once its end is acknowledged, so it is on the disk by then.
    const bool isOnDisk = !file.IsWriting() || file.Sync();
    End(isOnDisk ? TransferState::UploadCompleted : TransferState::UploadErrors);
    return isOnDisk;
}

bool Transfer::EndWithErrors() {
    const bool isDownload = state == TransferState::Downloading || state == TransferState::DownloadWaiting ||
                            state == TransferState::DownloadPreparation;
    if (!isDownload && state != TransferState::Uploading)
        return false;
    End(isDownload ? TransferState::DownloadErrors : TransferState::UploadErrors);
    return true;
}

void Transfer::End(TransferState newState, KelText newReason) {
    assert(!IsTransferring(newState));
    Enter(newState, Urgency::AtOnce, std::move(newReason));
}

}
