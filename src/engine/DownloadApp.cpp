#include "engine/DownloadApp.h"

#include "settings/SettingsCheck.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto pingPeriod = 1000ms;
constexpr auto endOfServePeriod = 5000ms;
constexpr auto testXonPeriod = 3000ms;
constexpr std::uint8_t testTerminator = 0x40;
constexpr std::string_view testMessage = "LocalTestMessage";
constexpr int largestBlock = 100;
constexpr std::int64_t uploadRange = 1000000; // the size of what is coming is not known

// Half a second of line time.
int BlockSize(int bitsPerSecond) {
    return std::clamp(bitsPerSecond / 8 / 2, 1, largestBlock);
}

std::string TextOf(std::uint8_t byte) {
    return std::string(1, static_cast<char>(byte));
}

KelText FolderOf(const std::filesystem::path& path) {
    return AsFolderSetting(FromPath(path.parent_path()));
}

char16_t Unit(char byte) {
    return static_cast<unsigned char>(byte);
}

}

DownloadApp::DownloadApp(EngineSetup setup, KelText machine)
    : LinkEngine(std::move(setup), std::move(machine)),
      pingNow(timers, clock, "DownloadApp::PingNow", pingPeriod, Timer::Kind::Repeating, [this] { Ping(); }),
      endOfServe(timers, clock, "DownloadApp::EndOfServe", endOfServePeriod, Timer::Kind::Repeating,
                 [this] { EndOfServeTick(); }),
      testXon(timers, clock, "DownloadApp::TestXon", testXonPeriod, Timer::Kind::OneShot,
              [this] { SendText(TextOf(xon)); }) {}

DownloadApp::~DownloadApp() {
    Terminate();
}

void DownloadApp::StopTimers() {
    for (Timer* timer : {&endOfServe, &testXon, &pingNow})
        timer->Stop();
    downloadNow.reset();
}

void DownloadApp::EndUnsafeTransfer() {
    if (transferState == TransferState::Downloading)
        EndTransfer(TransferState::DownloadErrors);
    else if (transferState == TransferState::Uploading)
        EndTransfer(TransferState::UploadErrors);
}

void DownloadApp::OnReceived() {
    if (transferState == TransferState::LoopbackFailure)
        CheckLoopback();
    ProcessReceivedData();
}

void DownloadApp::OnLineFree() {
    SendNextBlock();
}

void DownloadApp::CheckLoopback() {
    if (ExtractMessage(testTerminator, false) == 0)
        return;
    // The terminator is printable and stays in the message, and noise may stand before it.
    const auto found = std::search(messageText.begin(), messageText.end(), testMessage.begin(), testMessage.end(),
                                   [](char a, char b) { return ToUpperAscii(Unit(a)) == ToUpperAscii(Unit(b)); });
    if (found != messageText.end())
        transferState = TransferState::LoopbackSuccess;
}

void DownloadApp::ProcessReceivedData() {
    if (transferState == TransferState::Uploading) {
        const auto bytes = line.Receive().Bytes();
        bytesDone += static_cast<std::int64_t>(bytes.size());
        const auto isWritten =
            transferFile.Write(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
        SetProgress(bytesDone, uploadRange);
        if (!isWritten)
            EndTransfer(TransferState::UploadErrors);
    }
    // A loop-back test's message may arrive in pieces.
    if (transferState != TransferState::LoopbackFailure)
        line.Receive().Clear();
}

void DownloadApp::SendNextBlock() {
    if (transferState != TransferState::Downloading)
        return;
    if (!line.Transmit().IsEmpty()) {
        // A block that a held line did not take goes on as soon as the line does.
        if (!line.LineLamps().xoffHold)
            line.Transmit().SetWritePending(true);
        return;
    }
    if (fileImage.Position() < fileImage.Length()) {
        SendBytes(BlockSize(line.BitsPerSecond()));
        bytesDone = static_cast<std::int64_t>(fileImage.Position());
        SetProgress(bytesDone, bytesTotal);
        return;
    }
    transferState = TransferState::DownloadCompleted;
    SetProgress(bytesTotal, bytesTotal);
    display.Edit().sendFile.isEnabled = true;
    fileImage.Clear();
}

void DownloadApp::SendBytes(int count) {
    const auto block = fileImage.Next(static_cast<std::size_t>(std::max(count, 0)));
    line.Transmit().AppendBlock(count, block, std::chrono::milliseconds(settings.characterDelayMilliseconds));
}

void DownloadApp::DownloadNow() {
    downloadNow.reset();
    if (settings.sendStartCode != 0)
        SendChar(settings.startCharacter, false);
    if (settings.transmitDelaySeconds <= 0) {
        StartDownload();
        return;
    }
    const auto delay = std::chrono::seconds(settings.transmitDelaySeconds);
    trace.Note("Download delayed for " + std::to_string(settings.transmitDelaySeconds) + " second(s).");
    downloadNow = std::make_unique<Timer>(timers, clock, "DownloadApp::DownloadNow", delay, Timer::Kind::OneShot,
                                          [this] { StartDownload(); });
    downloadNow->Start();
    transferState = TransferState::DownloadWaiting;
    bytesDone = 0;
}

void DownloadApp::StartDownload() {
    downloadNow.reset();
    transferState = TransferState::DownloadPreparation;
    BeginDownload();
}

void DownloadApp::BeginDownload() {
    window.DrawAttention();
}

void DownloadApp::SendFile(const std::filesystem::path& path) {
    // While the user chose, the controller may have begun.
    if (IsTransferring(transferState) || IsClosing())
        return;
    NameTransfer(path);
    const bool isLoaded =
        transferFile.Open(path, KelFile::Mode::ReadBytes) && fileImage.Load(transferFile, IsClosing());
    transferFile.Close();
    if (!isLoaded) {
        transferState = TransferState::DownloadCouldNotOpen;
        ShowStatus();
        return;
    }
    bytesTotal = static_cast<std::int64_t>(fileImage.Length());
    settings.downloadPath = FolderOf(path);
    RememberExtension(path);
    SetCaption(machineName + u" " + transferPath);
    BeginTransfer(TransferState::Downloading, bytesTotal, EndDialog::Download);
}

void DownloadApp::ReceiveFile(const std::filesystem::path& path) {
    if (IsTransferring(transferState) || IsClosing())
        return;
    NameTransfer(path);
    settings.uploadPath = FolderOf(path);
    window.SettingsChanged(settings);
    if (!transferFile.Open(path, KelFile::Mode::WriteBytes)) {
        transferState = TransferState::UploadCouldNotOpen;
        ShowStatus();
        return;
    }
    RememberExtension(path);
    SetCaption(machineName + u" " + fileName);
    BeginTransfer(TransferState::Uploading, uploadRange, EndDialog::Upload);
}

void DownloadApp::NameTransfer(const std::filesystem::path& path) {
    transferPath = FromPath(path);
    fileName = FromPath(path.filename());
    transferFile.Close();
}

void DownloadApp::RememberExtension(const std::filesystem::path& path) {
    settings.fileExtension = AsExtensionSetting(FromPath(path.extension()));
    window.SettingsChanged(settings);
}

void DownloadApp::BeginTransfer(TransferState state, std::int64_t range, EndDialog endDialog) {
    bytesDone = 0;
    SetProgress(0, range);
    display.Edit().endDialog = endDialog;
    display.EnableTransferButtons(false);
    transferState = state;
    ShowStatus();
}

void DownloadApp::ReleaseTransfer(std::int64_t range) {
    transferFile.Close();
    fileImage.Clear();
    SetProgress(0, range);
    display.Edit().endDialog = EndDialog::None;
    display.EnableTransferButtons(true);
}

void DownloadApp::EndTransfer(TransferState state) {
    transferState = state;
    ReleaseTransfer(bytesTotal);
    ShowStatus();
}

void DownloadApp::CompleteUpload() {
    // The transfer may have ended by itself while the user reached for the button.
    if (transferState != TransferState::Uploading)
        return;
    bytesDone = static_cast<std::int64_t>(transferFile.BytesWritten());
    const bool isOnDisk = !transferFile.IsWriting() || transferFile.Sync();
    EndTransfer(isOnDisk ? TransferState::UploadCompleted : TransferState::UploadErrors);
}

void DownloadApp::CancelUpload() {
    if (transferState != TransferState::Uploading)
        return;
    // What has arrived is kept: it may be all there is of the file.
    EndTransfer(TransferState::UploadCancelled);
}

void DownloadApp::CancelDownload() {
    if (transferState == TransferState::Downloading)
        EndTransfer(TransferState::DownloadCancelled);
}

void DownloadApp::SendXoffTest() {
    SendText(TextOf(xoff));
    testXon.Start();
}

void DownloadApp::StartLoopbackTest() {
    transferState = TransferState::Waiting;
    ShowStatus();
    transferState = TransferState::LoopbackFailure;
    trace.EndLine();
    SendText(std::string(testMessage) + TextOf(testTerminator));
    // Before it has left, the state says nothing.
    FreezeDisplayUntilSent();
}

void DownloadApp::SetPingText(std::string text, std::chrono::milliseconds period) {
    pingText = std::move(text);
    pingNow.SetPeriod(period);
    pingNow.Start();
}

void DownloadApp::Ping() {
    if (!pingText.empty())
        SendText(pingText);
}

void DownloadApp::ResetLink() {
    // The state goes on to Waiting at once: nobody cancelled, so nothing is to be read of it.
    if (transferState == TransferState::Uploading)
        ReleaseTransfer(uploadRange);
    transferState = TransferState::Waiting;
}

void DownloadApp::EndOfServeTick() {
    ResetLink();
    if (settings.networkMode != 0 && settings.serverMode == 0)
        RequestFileList();
}

void DownloadApp::EndOfServe() {
    ResetLink();
    const bool isNetworked = settings.networkMode != 0;
    for (ActionButton* button : {&display.Edit().sendFile, &display.Edit().receiveFile, &display.Edit().test})
        button->isVisible = !isNetworked;
    if (!isNetworked || settings.serverMode != 0) {
        pingNow.Stop();
        return;
    }
    transferState = TransferState::ClientCannotFindServer;
    RequestFileList();
}

}
