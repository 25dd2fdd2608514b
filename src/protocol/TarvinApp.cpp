#include "protocol/TarvinApp.h"

#include "files/FileNames.h"
#include "protocol/Frame.h"

#include <utility>

namespace tarvin {

namespace {

constexpr int attemptsAllowed = 3;
constexpr std::int64_t uploadRangeAtStart = 10000;

}

TarvinApp::TarvinApp(EngineSetup setup, KelText machine)
    : DownloadApp(std::move(setup), machine.empty() ? defaultMachineName : std::move(machine)) {
    settings.fileExtension.clear();
}

void TarvinApp::SendMessage(std::string_view text) {
    BuildFrame(text, frame);
    SendText(frame);
}

void TarvinApp::Fail(TransferState state, std::string_view answer) {
    transferState = state;
    ShowStatus();
    SendMessage(answer);
}

void TarvinApp::ProcessReceivedData() {
    while (ExtractMessage(frameEnd, false) > 0) {
        incomingLine = messageText;
        HandleMessage();
        ClearMessage();
    }
}

void TarvinApp::HandleMessage() {
    // Each test sees the state that the one before left, and a line may hold more than one code: "ABST" within a line
    // of an upload is stored as data and is a request as well, because nothing tells a lost line end from data.
    bool handled = HandleUploadMessage();
    const bool isTransferring =
        transferState == TransferState::Uploading || transferState == TransferState::Downloading;
    if (!isTransferring && transferFile.IsOpen())
        transferFile.Close();
    handled = HandleRequest() || handled;
    if (transferState != TransferState::Downloading)
        return;
    handled = HandleAcknowledgement() || handled;
    if (!handled) {
        // Out of step: the controller is told at once instead of being left to wait.
        retryCount = attemptsAllowed;
        OnResend();
    }
}

bool TarvinApp::HandleUploadMessage() {
    bool handled = false;
    if (transferState == TransferState::Uploading && HoldsCode(incomingLine, code::uploadData)) {
        OnDataLine();
        handled = true;
    }
    if (transferState == TransferState::Uploading && HoldsCode(incomingLine, code::uploadEnd)) {
        OnEndOfUpload();
        handled = true;
    }
    return handled;
}

bool TarvinApp::HandleRequest() {
    bool handled = false;
    if (HoldsCode(incomingLine, code::linkTest)) {
        OnLinkTest();
        handled = true;
    }
    if (HoldsCode(incomingLine, code::uploadRequest)) {
        incomingLine = messageText;
        OnUploadRequest();
        handled = true;
    }
    if (HoldsCode(incomingLine, code::downloadRequest)) {
        incomingLine = messageText;
        OnDownloadRequest();
        handled = true;
    }
    return handled;
}

bool TarvinApp::HandleAcknowledgement() {
    if (HoldsCode(incomingLine, code::dataGood)) {
        SendNextDataLine();
        retryCount = 0;
        return true;
    }
    if (HoldsCode(incomingLine, code::dataBad)) {
        OnResend();
        return true;
    }
    return false;
}

void TarvinApp::OnLinkTest() {
    // Shown by the next tick: a controller that tests the link all day long must not make the display flicker.
    transferState = TransferState::LinkTest;
    lines.Clear();
    SendMessage(code::linkTestAnswer);
}

bool TarvinApp::MakeTransferPath(const KelText& folder) {
    const std::string number(FileNumber(incomingLine));
    KelText path = WithOwnSeparators(folder);
    if (!path.empty() && !path.ends_with(pathSeparator))
        path += pathSeparator;
    fileName = FromBytes(number);
    transferPath = path + fileName + u"." + settings.fileExtension;
    SetCaption(machineName + u"  " + fileName);
    return IsUsableFileNumber(number);
}

void TarvinApp::OnUploadRequest() {
    const bool isUsable = MakeTransferPath(settings.uploadPath);
    if (!isUsable || !transferFile.Open(ToPath(transferPath), KelFile::Mode::WriteText)) {
        Fail(TransferState::UploadCouldNotOpen, code::cannotGoOn);
        return;
    }
    lines.Clear();
    // A download that still waits for its delay would break into this upload with an answer that nobody asked for.
    DropDelayedDownload();
    bytesDone = 0;
    transferState = TransferState::Uploading;
    SetProgress(0, uploadRangeAtStart);
    ShowStatus();
    SendMessage(code::acknowledge);
}

void TarvinApp::OnDataLine() {
    incomingLine = DataPayload(incomingLine);
    if (!incomingLine.empty()) {
        const auto isWritten = transferFile.Write(incomingLine + '\n');
        bytesDone = static_cast<std::int64_t>(transferFile.BytesWritten());
        if (!isWritten) {
            FailUpload();
            return;
        }
    }
    // The size of what is coming is not known; the range doubles whenever it is passed.
    if (bytesDone > bytesTotal)
        bytesTotal += bytesTotal;
    SetProgress(bytesDone, bytesTotal);
    SendMessage(code::acknowledge);
}

void TarvinApp::FailUpload() {
    transferFile.Close();
    SetProgress(0, bytesTotal);
    Fail(TransferState::UploadErrors, code::cannotGoOn);
}

void TarvinApp::OnEndOfUpload() {
    // The controller forgets the file once its end is acknowledged; so it is on the disk by then.
    if (!transferFile.Sync()) {
        FailUpload();
        return;
    }
    transferFile.Close();
    transferState = TransferState::UploadCompleted;
    ShowStatus();
    SetProgress(0, bytesTotal);
    SendMessage(code::acknowledge);
}

void TarvinApp::OnDownloadRequest() {
    if (transferFile.IsWriting()) {
        // Reading would have to give up a file that is still arriving.
        MakeTransferPath(settings.downloadPath);
        Fail(TransferState::DownloadCouldNotOpen, code::cannotRead);
        return;
    }
    DownloadNow();
}

LineList::LoadResult TarvinApp::LoadLines() {
    if (!transferFile.Open(ToPath(transferPath), KelFile::Mode::ReadText))
        return LineList::LoadResult::Unreadable;
    const LineList::LoadResult result = lines.Load(transferFile, IsClosing());
    transferFile.Close();
    return result;
}

bool TarvinApp::CanSendLines() const {
    // A line that is cut, split or ended by a byte of its own would make the machine cut something else.
    return lines.LongestLine() <= longestDataLine && !lines.HasStrayCarriageReturn();
}

void TarvinApp::BeginDownload() {
    // From the line as it stands: after a transmit delay it may be a later one than the request.
    const bool isUsable = MakeTransferPath(settings.downloadPath);
    const auto loaded = isUsable ? LoadLines() : LineList::LoadResult::Unreadable;
    if (loaded == LineList::LoadResult::Unreadable) {
        Fail(TransferState::DownloadCouldNotOpen, code::cannotRead);
        return;
    }
    if (loaded == LineList::LoadResult::NotText)
        ShowMessage({u"Not a valid ASCII file.", u"Error", okOnly | iconExclamation});
    if (!CanSendLines()) {
        lines.Clear();
        Fail(TransferState::FileFormatError, code::cannotRead);
        return;
    }
    bytesTotal = static_cast<std::int64_t>(lines.FileSize());
    bytesDone = 0;
    SetProgress(0, bytesTotal);
    transferState = TransferState::Downloading;
    SendMessage(code::acknowledge);
    SendNextDataLine();
}

void TarvinApp::SendNextDataLine() {
    const std::string_view dataLine = lines.NextNonEmpty();
    if (!dataLine.empty()) {
        lastDataMessage.assign(code::downloadData);
        lastDataMessage.append(dataLine);
        SendMessage(lastDataMessage);
        // Two for the line end in the file.
        bytesDone += static_cast<std::int64_t>(dataLine.size()) + 2;
        SetProgress(bytesDone, bytesTotal);
        return;
    }
    lines.Clear();
    transferState = TransferState::DownloadCompleted;
    ShowStatus();
    SetProgress(0, bytesTotal);
    SendMessage(code::downloadEnd);
}

void TarvinApp::OnResend() {
    ++retryCount;
    if (retryCount < attemptsAllowed) {
        SendMessage(lastDataMessage);
        return;
    }
    SendMessage(code::cannotGoOn);
    transferState = TransferState::DownloadErrors;
    lines.Clear();
    ShowStatus();
}

}
