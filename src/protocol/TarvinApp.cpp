#include "protocol/TarvinApp.h"

#include "files/FileNames.h"
#include "protocol/Frame.h"

#include <utility>

namespace tarvin {

namespace {

constexpr int attemptsAllowed = 3;
constexpr int repeatsOfLastAnswer = 2;
// What the controller counts for each line end of the file.
constexpr std::int64_t lineEndBytes = 2;

}

DownloadSettings TarvinApp::FirstSettings() {
    DownloadSettings settings;
    settings.fileExtension.clear();
    return settings;
}

TarvinApp::TarvinApp(const ProtocolParts& parts)
    : parts(parts), transfer(parts.transfer), download(parts, [this] { BeginDownload(); }) {}

void TarvinApp::Abandon() {
    download.Drop();
    lastAnswer = {};
}

void TarvinApp::OnTransferLost() {
    hasLostTransfer = true;
    lastAnswer = {};
}

void TarvinApp::Send(std::string_view text) {
    BuildFrame(text, frame);
    parts.sender.SendText(frame);
}

void TarvinApp::OnReceived(ReceiveBuffer& received) {
    while (auto next = received.TakeMessage(frameEnd, false)) {
        // The line feed of a line end stands alone before the next message.
        if (next->empty() || IsRepeatOfHeldMessage(*next))
            continue;
        message = std::move(*next);
        HandleMessage();
    }
}

// While the line is held, the controller does not get its answer and repeats its message. Answering twice would put it
// one acknowledgement ahead for the rest of the transfer. So a repeat is left alone, and any other message drops the
// answer that waits.
bool TarvinApp::IsRepeatOfHeldMessage(const std::string& next) {
    const bool isHeldUp = parts.sender.IsHeldUp();
    const bool isRepeat = isHeldUp && next == message;
    if (isHeldUp && !isRepeat)
        parts.sender.DropUnsent();
    // A controller that speaks this language takes answers, so an old XOFF is none of its own.
    if (HoldsKnownCode(next))
        parts.sender.EndOldHold();
    return isRepeat;
}

// A line of a running upload is data, whatever it holds: "(SICHERHEITSABSTAND 5)" is a comment and no request. In any
// other message a code counts wherever it stands, and there may be more than one. Each test sees the state that the one
// before left.
void TarvinApp::HandleMessage() {
    if (RepeatLastAnswer() || RefuseLostTransfer())
        return;
    if (transfer.State() == TransferState::Uploading && HoldsCode(message, code::uploadData)) {
        OnDataLine();
        return;
    }
    bool isHandled = HandleUploadEnd();
    isHandled = HandleRequest() || isHandled;
    if (transfer.State() != TransferState::Downloading)
        return;
    isHandled = HandleAcknowledgement() || isHandled;
    if (!isHandled) {
        // The two sides are out of step. The controller is told at once instead of being left to wait.
        failedAttempts = attemptsAllowed;
        OnResend();
    }
}

// The last answer of a transfer may be lost. The controller then repeats what it sent, and nothing but the same answer
// can tell it that all is well.
void TarvinApp::SendLast(std::string_view answer, std::string_view repeatedBy) {
    Send(answer);
    lastAnswer = {answer, repeatedBy, repeatsOfLastAnswer};
}

// Any other message says that the controller has gone on.
bool TarvinApp::RepeatLastAnswer() {
    const std::string_view text = std::string_view(message).substr(0, message.size() - 1);
    if (lastAnswer.repeatsLeft == 0 || !text.ends_with(lastAnswer.repeatedBy) || HoldsCode(text, code::uploadData)) {
        lastAnswer = {};
        return false;
    }
    --lastAnswer.repeatsLeft;
    Send(lastAnswer.text);
    return true;
}

// The first message about a transfer that the link has taken along. A request begins anew instead.
bool TarvinApp::RefuseLostTransfer() {
    if (!hasLostTransfer)
        return false;
    const bool isRequest = HoldsAnyCode(message, {code::uploadRequest, code::downloadRequest});
    const bool isRefused =
        !isRequest && HoldsAnyCode(message, {code::uploadData, code::uploadEnd, code::dataGood, code::dataBad});
    hasLostTransfer = !isRequest && !isRefused;
    if (isRefused)
        Send(code::cannotGoOn);
    return isRefused;
}

bool TarvinApp::HandleUploadEnd() {
    if (transfer.State() != TransferState::Uploading || !HoldsCode(message, code::uploadEnd))
        return false;
    transfer.CompleteUpload(
        [this](bool isCompleted) { SendLast(isCompleted ? code::acknowledge : code::cannotGoOn, code::uploadEnd); });
    return true;
}

bool TarvinApp::HandleRequest() {
    bool isHandled = false;
    if (HoldsCode(message, code::linkTest)) {
        DropAbandoned();
        transfer.ShowLinkTest();
        Send(code::linkTestAnswer);
        isHandled = true;
    }
    if (HoldsCode(message, code::uploadRequest)) {
        OnUploadRequest();
        isHandled = true;
    }
    if (HoldsCode(message, code::downloadRequest)) {
        OnDownloadRequest();
        isHandled = true;
    }
    return isHandled;
}

bool TarvinApp::HandleAcknowledgement() {
    if (HoldsCode(message, code::dataGood)) {
        SendNextDataLine();
        failedAttempts = 0;
        return true;
    }
    if (HoldsCode(message, code::dataBad)) {
        OnResend();
        return true;
    }
    return false;
}

// Names the transfer after the number in the message. False if that number may not name a file.
bool TarvinApp::NameTransfer(const KelText& folder) {
    const std::string number(FileNumber(message));
    KelText path = WithOwnSeparators(folder);
    if (!path.empty() && !path.ends_with(pathSeparator))
        path += pathSeparator;
    const KelText fileName = FromBytes(number);
    transfer.SetName({path + fileName + u"." + parts.settings.fileExtension, fileName, u"  " + fileName});
    return IsUsableFileNumber(number);
}

// A message that begins something else gives up a download that is under way, waits or is queued: its answer would come
// where the controller does not expect it.
void TarvinApp::DropAbandoned() {
    download.Drop();
    if (transfer.State() == TransferState::Downloading)
        parts.sender.DropUnsent();
}

// An upload that the controller leaves for another request has failed. One that was begun by hand waits for its
// request.
void TarvinApp::EndUnfinishedUpload() {
    if (IsUploadingByRequest())
        transfer.End(TransferState::UploadErrors);
}

bool TarvinApp::IsUploadingByRequest() const {
    return transfer.State() == TransferState::Uploading && transfer.Dialog() == EndDialog::None;
}

void TarvinApp::OnUploadRequest() {
    DropAbandoned();
    const bool isRepeat = IsUploadingByRequest() && transfer.BytesDone() == 0 &&
                          transfer.Name().fileName == FromBytes(FileNumber(message));
    if (isRepeat) {
        Send(code::acknowledge);
        return;
    }
    EndUnfinishedUpload();
    if (!NameTransfer(parts.settings.uploadPath)) {
        transfer.End(TransferState::UploadCouldNotOpen);
        Send(code::cannotGoOn);
        return;
    }
    if (!transfer.BeginUpload()) {
        Send(code::cannotGoOn);
        return;
    }
    Send(code::acknowledge);
}

void TarvinApp::OnDataLine() {
    const std::string_view line = DataPayload(message);
    // An empty line is acknowledged but not stored.
    const bool isStored = line.empty() || transfer.Store(std::string(line) + '\n');
    Send(isStored ? code::acknowledge : code::cannotGoOn);
}

void TarvinApp::OnDownloadRequest() {
    EndUnfinishedUpload();
    if (transfer.IsStoring()) {
        // Reading would have to give up a file that a user waits for.
        NameTransfer(parts.settings.downloadPath);
        transfer.End(TransferState::DownloadCouldNotOpen);
        Send(code::cannotRead);
        return;
    }
    DropAbandoned();
    // The number counts that came with the request, whatever arrives during the delay.
    isRequestUsable = NameTransfer(parts.settings.downloadPath);
    download.Start();
}

void TarvinApp::BeginDownload() {
    if (!isRequestUsable) {
        transfer.End(TransferState::DownloadCouldNotOpen);
        Send(code::cannotRead);
        return;
    }
    transfer.BeginDownload(longestDataLine, [this](bool hasBegun) {
        if (!hasBegun) {
            Send(code::cannotRead);
            return;
        }
        failedAttempts = 0;
        Send(code::acknowledge);
        SendNextDataLine();
    });
}

void TarvinApp::SendNextDataLine() {
    const std::string_view dataLine = transfer.NextLine();
    if (dataLine.empty()) {
        transfer.End(TransferState::DownloadCompleted);
        SendLast(code::downloadEnd, code::dataBad);
        return;
    }
    dataMessage.assign(code::downloadData);
    dataMessage.append(dataLine);
    Send(dataMessage);
    transfer.CountSent(static_cast<std::int64_t>(dataLine.size()) + lineEndBytes);
}

void TarvinApp::OnResend() {
    ++failedAttempts;
    if (failedAttempts < attemptsAllowed) {
        Send(dataMessage);
        return;
    }
    transfer.End(TransferState::DownloadErrors);
    Send(code::cannotGoOn);
}

}
