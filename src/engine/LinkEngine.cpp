#include "engine/LinkEngine.h"

#include "engine/CommsMonitor.h"

#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto reopenPeriod = 1000ms;
constexpr auto longestIdle = 1h;

}

LinkEngine::LinkEngine(EngineSetup setup, KelText machine)
    : machineName(std::move(machine)),
      clock(setup.clock),
      window(setup.window),
      trace(traffic, [this] { window.TrafficArrived(); }),
      logs(clock, trace, window),
      line(std::move(setup.port), clock, logs.Recorder(), *this,
           [this](const MessageBoxText& box) { window.ShowMessage(box); }),
      display(window),
      store(std::move(setup.installation), machineName, std::move(setup.ncFilesFolder)),
      displayTicker(timers, clock, [this] { return ShowStatus(); }),
      reopenPort(timers, clock, "DownloadApp::ReopenPort", reopenPeriod, Timer::Kind::Repeating,
                 [this] { ReopenPort(); }) {}

LinkEngine::~LinkEngine() = default;

void LinkEngine::Create() {
    isCreated = true;
    auto loaded = store.Load(settings);
    settings = std::move(loaded.settings);
    window.SettingsChanged(settings);
    if (loaded.warning)
        window.ShowMessage(*loaded.warning);
    OpenPort();
    transferState = TransferState::Waiting;
    displayTicker.Start();
    ShowStatus();
}

void LinkEngine::StartMonitor() {
    monitor = std::make_unique<CommsMonitor>(*this);
}

void LinkEngine::Terminate() {
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
    // What was asked for last is not lost because the line was slow.
    commands.Run();
    StopTimers();
    reopenPort.Stop();
    displayTicker.Stop();
    line.ClosePort();
    (void)store.SaveSettings(settings);
    if (transferFile.IsWriting())
        (void)transferFile.Sync();
    transferFile.Close();
    logs.EndCommsLog("Application Terminated");
    logs.Flush();
}

void LinkEngine::Post(CommandQueue::Command command) {
    commands.Post(std::move(command));
    WakeMonitor();
}

void LinkEngine::ApplySettings(const DownloadSettings& newSettings) {
    KeepSettings(newSettings);
    if (!isClosing)
        OpenPort();
}

void LinkEngine::SetHandshakes(bool isCtsHeeded, bool isDsrHeeded) {
    DownloadSettings changed = settings;
    changed.ctsFlow = isCtsHeeded ? 1 : 0;
    changed.dsrFlow = isDsrHeeded ? 1 : 0;
    ApplySettings(changed);
}

void LinkEngine::OpenPort() {
    line.OpenPort(settings, machineName);
    ShowLink();
    if (line.IsOpen())
        reopenPort.Stop();
    else
        reopenPort.Start();
}

void LinkEngine::ReopenPort() {
    if (!line.Reopen(settings, machineName))
        return;
    reopenPort.Stop();
    ShowLink();
    logs.LogLine(ToUtf8(line.Title()), true);
}

void LinkEngine::ShowLink() {
    display.Edit().linkTitle = line.Title();
    display.Edit().hasLink = line.IsLinked();
    SetCaption(line.Title());
    display.Publish();
}

bool LinkEngine::RunPass() {
    commands.Run();
    const bool isMoreDue = line.CheckLineStatus();
    trace.ShowOpenLine();
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

void LinkEngine::WaitForWork() {
    const auto due = timers.NextDue();
    line.Wait(due ? *due - clock.Now() : longestIdle, resumesDisplayWhenSent);
}

void LinkEngine::OnOverrun() {
    transferState = TransferState::Overrun;
    // At once: the next read ends the state before any tick could show it.
    ShowStatus();
}

void LinkEngine::OnOverrunEnded() {
    if (transferState == TransferState::Overrun)
        transferState = TransferState::Waiting;
}

void LinkEngine::OnLinkLost() {
    EndUnsafeTransfer();
    ShowLink();
    reopenPort.Start();
}

std::size_t LinkEngine::ExtractMessage(std::uint8_t terminator, bool keepTerminator) {
    return line.Receive().ExtractMessage(terminator, keepTerminator, messageText);
}

bool LinkEngine::ShowStatus() {
    const StatusArguments arguments = {transferPath,         bytesDone, bytesTotal,
                                       settings.stationName, peerName,  settings.serverMode != 0};
    const StatusDescription description = DescribeState(transferState, arguments);
    display.Edit().lamps = line.LineLamps();
    display.Edit().transferPath = transferPath;
    const bool isChanged = display.Show(transferState, description);
    LogStatus(description);
    shownByteCount = bytesDone;
    line.LineLamps().received = line.LineLamps().transmitted = false;
    return isChanged;
}

// A status is logged when it comes, not at each tick that it stays; and again, if it could not be written.
void LinkEngine::LogStatus(const StatusDescription& description) {
    const KelText& statusLine = display.Edit().statusLine;
    if (description.isReported && (reportedLine != statusLine || logs.IsStatusUnwritten())) {
        if (description.reportedBefore)
            logs.LogStatusChange(settings, *description.reportedBefore, fileName);
        logs.LogStatusChange(settings, statusLine, fileName);
    }
    reportedLine = description.isReported ? statusLine : KelText();
}

void LinkEngine::FreezeDisplayUntilSent() {
    displayTicker.Stop();
    resumesDisplayWhenSent = true;
}

bool LinkEngine::HasNews() {
    return transferState != display.Edit().transferState || bytesDone != shownByteCount ||
           line.LineLamps() != display.Edit().lamps || display.IsEdited();
}

void LinkEngine::KeepSettings(const DownloadSettings& newSettings) {
    settings = newSettings;
    window.SettingsChanged(settings);
}

void LinkEngine::StartCommsLog(const std::filesystem::path& path) {
    settings.commsLogFileName = FromPath(path);
    window.SettingsChanged(settings);
    logs.StartCommsLog(path, settings, 0);
    // A disk that is full shows only now.
    logs.Flush();
    display.Edit().isCommsLogOn = logs.IsCommsLogOpen();
    display.Publish();
}

void LinkEngine::StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit) {
    logs.StartCommsLog(path, settings, sizeLimit);
}

void LinkEngine::StopCommsLog() {
    logs.EndCommsLog("End of Logging");
}

}
