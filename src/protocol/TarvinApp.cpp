#include "protocol/TarvinApp.h"

#include "files/FileNames.h"
#include "protocol/Frame.h"

#include <utility>

namespace tarvin {

namespace {

constexpr int attemptsAllowed = 3;
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
    const bool isRepeat = parts.sender.IsHeldUp() && next == message;
    if (isRepeat)
        transfer.CountRepeat();
    else if (parts.sender.IsHeldUp())
        parts.sender.DropUnsent();
    // A controller that speaks this language takes answers, so an old XOFF is none of its own.
    if (HoldsKnownCode(next))
        parts.sender.EndOldHold();
    return isRepeat;
}

// Each test sees the state that the one before left, and a message may hold more than one code: "ABST" within a line of
// an upload is stored as data and is a request as well, because nothing tells a lost line end from data.
void TarvinApp::HandleMessage() {
    codeText = message;
    if (RefuseLostTransfer())
        return;
    bool isHandled = HandleUploadMessage();
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

// The first message about a transfer that the link has taken along. A request begins anew instead.
bool TarvinApp::RefuseLostTransfer() {
    if (!hasLostTransfer)
        return false;
    for (const std::string_view request : {code::uploadRequest, code::downloadRequest}) {
        if (HoldsCode(codeText, request)) {
            hasLostTransfer = false;
            return false;
        }
    }
    for (const std::string_view part : {code::uploadData, code::uploadEnd, code::dataGood, code::dataBad}) {
        if (HoldsCode(codeText, part)) {
            hasLostTransfer = false;
            Send(code::cannotGoOn);
            return true;
        }
    }
    return false;
}

bool TarvinApp::HandleUploadMessage() {
    bool isHandled = false;
    if (transfer.State() == TransferState::Uploading && HoldsCode(codeText, code::uploadData)) {
        OnDataLine();
        isHandled = true;
    }
    if (transfer.State() == TransferState::Uploading && HoldsCode(codeText, code::uploadEnd)) {
        Send(transfer.CompleteUpload() ? code::acknowledge : code::cannotGoOn);
        isHandled = true;
    }
    return isHandled;
}

bool TarvinApp::HandleRequest() {
    bool isHandled = false;
    if (HoldsCode(codeText, code::linkTest)) {
        DropAbandoned();
        transfer.ShowLinkTest();
        Send(code::linkTestAnswer);
        isHandled = true;
    }
    if (HoldsCode(codeText, code::uploadRequest)) {
        codeText = message;
        OnUploadRequest();
        isHandled = true;
    }
    if (HoldsCode(codeText, code::downloadRequest)) {
        codeText = message;
        OnDownloadRequest();
        isHandled = true;
    }
    return isHandled;
}

bool TarvinApp::HandleAcknowledgement() {
    if (HoldsCode(codeText, code::dataGood)) {
        SendNextDataLine();
        failedAttempts = 0;
        return true;
    }
    if (HoldsCode(codeText, code::dataBad)) {
        transfer.CountRepeat();
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

// A message that begins something else gives up what is under way, and what is queued for it.
void TarvinApp::DropAbandoned() {
    download.Drop();
    if (transfer.State() == TransferState::Downloading)
        parts.sender.DropUnsent();
}

void TarvinApp::OnUploadRequest() {
    DropAbandoned();
    if (!NameTransfer(parts.settings.uploadPath)) {
        transfer.End(TransferState::UploadCouldNotOpen);
        Send(code::cannotGoOn);
        return;
    }
    if (!transfer.BeginUpload()) {
        Send(code::cannotGoOn);
        return;
    }
    // A download that still waits for its delay would put an answer into this upload that the controller does not
    // expect.
    download.Drop();
    Send(code::acknowledge);
}

void TarvinApp::OnDataLine() {
    // Without the checksum character: it could complete a code at the end of the line.
    codeText = DataPayload(message);
    // An empty line is acknowledged but not stored.
    const bool isStored = codeText.empty() || transfer.Store(std::string(codeText) + '\n');
    Send(isStored ? code::acknowledge : code::cannotGoOn);
}

void TarvinApp::OnDownloadRequest() {
    if (transfer.IsStoring()) {
        // Reading would have to give up a file that is still arriving.
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
    if (!transfer.BeginDownload(longestDataLine)) {
        Send(code::cannotRead);
        return;
    }
    Send(code::acknowledge);
    SendNextDataLine();
}

void TarvinApp::SendNextDataLine() {
    const std::string_view dataLine = transfer.NextLine();
    if (dataLine.empty()) {
        transfer.End(TransferState::DownloadCompleted);
        Send(code::downloadEnd);
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
