#include "engine/DownloadApp.h"

#include "engine/CommsMonitor.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto pingPeriod = 1000ms;
constexpr auto endOfServePeriod = 5000ms;
constexpr auto testXonPeriod = 3000ms;
constexpr auto reopenPeriod = 1000ms;
constexpr auto longestIdle = 1h;
constexpr std::string_view xonText = "\x11";
constexpr std::string_view xoffText = "\x13";
constexpr std::uint8_t testTerminator = 0x40;
constexpr std::string_view testMessage = "LocalTestMessage";
constexpr int largestBlock = 100;
constexpr std::int64_t uploadRange = 1000000; // the size of what is coming is not known

// Half a second of line time.
int BlockSize(const DownloadSettings& settings) {
    return std::clamp(std::atoi(ToUtf8(settings.baudRate).c_str()) / 8 / 2, 1, largestBlock);
}

char16_t Unit(char byte) {
    return static_cast<unsigned char>(byte);
}

}

DownloadApp::DownloadApp(EngineSetup setup, KelText machine)
    : machineName(std::move(machine)),
      clock(setup.clock),
      window(setup.window),
      store(std::move(setup.installation), machineName, std::move(setup.ncFilesFolder)),
      trace(traffic, [this] { window.TrafficArrived(); }),
      logs(clock, trace, window),
      line(std::move(setup.port), clock, logs.Recorder(), *this,
           [this](const MessageBoxText& box) { window.ShowMessage(box); }),
      display(window),
      displayTicker(timers, clock, [this] { return ShowStatus(); }),
      pingNow(timers, clock, "DownloadApp::PingNow", pingPeriod, Timer::Kind::Repeating, [this] { Ping(); }),
      endOfServe(timers, clock, "DownloadApp::EndOfServe", endOfServePeriod, Timer::Kind::Repeating,
                 [this] { EndOfServeTick(); }),
      testXon(timers, clock, "DownloadApp::TestXon", testXonPeriod, Timer::Kind::OneShot,
              [this] { SendText(xonText); }),
      reopenPort(timers, clock, "DownloadApp::ReopenPort", reopenPeriod, Timer::Kind::Repeating,
                 [this] { ReopenPort(); }) {}

DownloadApp::~DownloadApp() {
    Terminate();
}

void DownloadApp::Create() {
    isCreated = true;
    auto loaded = store.Load(settings);
    settings = std::move(loaded.settings);
    if (loaded.warning)
        window.ShowMessage(*loaded.warning);
    OpenPort();
    transferState = TransferState::Waiting;
    displayTicker.Start();
    ShowStatus();
}

void DownloadApp::StartMonitor() {
    monitor = std::make_unique<CommsMonitor>(*this);
}

void DownloadApp::Terminate() {
    if (!std::exchange(isCreated, false))
        return;
    isClosing = true;
    if (monitor) {
        monitor->Stop();
        // Again and again: a write that is about to begin is not there to be cancelled yet.
        do
            line.CancelWrite();
        while (!monitor->WaitFor(10ms));
        monitor.reset();
    }
    for (Timer* timer : {&endOfServe, &testXon, &pingNow, &reopenPort})
        timer->Stop();
    displayTicker.Stop();
    downloadNow.reset();
    line.ClosePort();
    store.SaveSettings(settings);
    if (transferFile.IsWriting())
        transferFile.Sync();
    transferFile.Close();
    logs.EndCommsLog("Application Terminated");
    logs.Flush();
}

void DownloadApp::Post(CommandQueue::Command command) {
    commands.Post(std::move(command));
    WakeMonitor();
}

void DownloadApp::ApplySettings(const DownloadSettings& newSettings) {
    settings = newSettings;
    OpenPort();
}

void DownloadApp::OpenPort() {
    line.OpenPort(settings, machineName);
    ShowLink();
    if (line.IsOpen())
        reopenPort.Stop();
    else
        reopenPort.Start();
}

void DownloadApp::ReopenPort() {
    if (!line.Reopen(settings, machineName))
        return;
    reopenPort.Stop();
    ShowLink();
    logs.LogLine(ToUtf8(line.Title()), true);
}

void DownloadApp::ShowLink() {
    display.Edit().linkTitle = line.Title();
    SetCaption(line.Title());
    display.Publish();
}

void DownloadApp::EndUnsafeTransfer() {
    if (transferState == TransferState::Downloading)
        EndTransfer(TransferState::DownloadErrors);
    else if (transferState == TransferState::Uploading)
        EndTransfer(TransferState::UploadErrors);
}

bool DownloadApp::RunPass() {
    commands.Run();
    const bool isMoreDue = line.CheckLineStatus();
    // The state of a loop-back test is not shown before its message has left: until then it says nothing.
    if (resumesDisplayWhenSent && (line.IsDrained() || !line.IsOpen())) {
        resumesDisplayWhenSent = false;
        displayTicker.Start();
    }
    timers.RunDue(clock.Now());
    // The line has been served; the disk may take its time now.
    logs.Flush();
    display.Edit().isCommsLogOn = logs.IsCommsLogOpen();
    if (displayTicker.IsQuiet() && HasNews())
        displayTicker.Start();
    return isMoreDue;
}

void DownloadApp::WaitForWork() {
    const auto due = timers.NextDue();
    line.Wait(due ? *due - clock.Now() : longestIdle, resumesDisplayWhenSent);
}

void DownloadApp::OnReceived() {
    if (transferState == TransferState::LoopbackFailure)
        CheckLoopback();
    ProcessReceivedData();
}

void DownloadApp::OnLineFree() {
    SendNextBlock();
}

void DownloadApp::OnOverrun() {
    transferState = TransferState::Overrun;
    // At once: the next read ends the state before any tick could show it.
    ShowStatus();
}

void DownloadApp::OnOverrunEnded() {
    if (transferState == TransferState::Overrun)
        transferState = TransferState::Waiting;
}

void DownloadApp::OnLinkLost() {
    EndUnsafeTransfer();
    ShowLink();
    reopenPort.Start();
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

std::size_t DownloadApp::ExtractMessage(std::uint8_t terminator, bool keepTerminator) {
    return line.Receive().ExtractMessage(terminator, keepTerminator, messageText);
}

void DownloadApp::ProcessReceivedData() {
    if (transferState == TransferState::Uploading) {
        const auto bytes = line.Receive().Bytes();
        bytesDone += static_cast<std::int64_t>(bytes.size());
        const bool isWritten =
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
        SendBytes(BlockSize(settings));
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
    transferPath = FromPath(path);
    fileName = FromPath(path.filename());
    transferFile.Close();
    const bool isLoaded = transferFile.Open(path, KelFile::Mode::ReadBytes) && fileImage.Load(transferFile, isClosing);
    transferFile.Close();
    if (!isLoaded) {
        transferState = TransferState::DownloadCouldNotOpen;
        ShowStatus();
        return;
    }
    bytesDone = 0;
    bytesTotal = static_cast<std::int64_t>(fileImage.Length());
    SetProgress(0, bytesTotal);
    SetCaption(machineName + u" " + transferPath);
    display.Edit().endDialog = EndDialog::Download;
    display.EnableTransferButtons(false);
    transferState = TransferState::Downloading;
    ShowStatus();
}

void DownloadApp::ReceiveFile(const std::filesystem::path& path) {
    transferPath = FromPath(path);
    fileName = FromPath(path.filename());
    transferFile.Close();
    if (!transferFile.Open(path, KelFile::Mode::WriteBytes)) {
        transferState = TransferState::UploadCouldNotOpen;
        ShowStatus();
        return;
    }
    bytesDone = 0;
    SetProgress(0, uploadRange);
    SetCaption(machineName + u" " + fileName);
    display.Edit().endDialog = EndDialog::Upload;
    display.EnableTransferButtons(false);
    transferState = TransferState::Uploading;
    ShowStatus();
}

void DownloadApp::EndTransfer(TransferState state) {
    transferState = state;
    transferFile.Close();
    fileImage.Clear();
    SetProgress(0, bytesTotal);
    display.Edit().endDialog = EndDialog::None;
    display.EnableTransferButtons(true);
    ShowStatus();
}

void DownloadApp::CompleteUpload() {
    bytesDone = static_cast<std::int64_t>(transferFile.BytesWritten());
    const bool isOnDisk = !transferFile.IsWriting() || transferFile.Sync();
    EndTransfer(isOnDisk ? TransferState::UploadCompleted : TransferState::UploadErrors);
}

void DownloadApp::CancelUpload() {
    // What has arrived is kept: it may be all there is of the file.
    EndTransfer(TransferState::UploadCancelled);
}

void DownloadApp::CancelDownload() {
    EndTransfer(TransferState::DownloadCancelled);
}

void DownloadApp::SendXoffTest() {
    SendText(xoffText);
    testXon.Start();
}

void DownloadApp::StartLoopbackTest() {
    transferState = TransferState::Waiting;
    ShowStatus();
    displayTicker.Stop();
    transferState = TransferState::LoopbackFailure;
    trace.EndLine();
    SendText(std::string(testMessage) + static_cast<char>(testTerminator));
    resumesDisplayWhenSent = true;
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
    if (transferState == TransferState::Uploading) {
        transferFile.Close();
        SetProgress(0, uploadRange);
        display.EnableTransferButtons(true);
        display.Edit().endDialog = EndDialog::None;
    }
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

bool DownloadApp::ShowStatus() {
    const StatusArguments arguments = {transferPath,         bytesDone, bytesTotal,
                                       settings.stationName, peerName,  settings.serverMode != 0};
    const StatusDescription description = DescribeState(transferState, arguments);
    display.Edit().lamps = line.LineLamps();
    const bool isChanged = display.Show(transferState, description);
    if (description.reportedBefore)
        logs.LogStatusChange(settings, *description.reportedBefore, fileName);
    if (description.isReported)
        logs.LogStatusChange(settings, display.Edit().statusLine, fileName);
    shownByteCount = bytesDone;
    line.LineLamps().received = line.LineLamps().transmitted = false;
    return isChanged;
}

void DownloadApp::StartCommsLog(const std::filesystem::path& path) {
    settings.commsLogFileName = FromPath(path);
    logs.StartCommsLog(path, settings, 0);
}

void DownloadApp::StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit) {
    logs.StartCommsLog(path, settings, sizeLimit);
}

void DownloadApp::StopCommsLog() {
    logs.EndCommsLog("End of Logging");
}

bool DownloadApp::HasNews() {
    return transferState != display.Edit().transferState || bytesDone != shownByteCount ||
           line.LineLamps() != display.Edit().lamps || display.IsEdited();
}

}
