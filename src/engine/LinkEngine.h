#pragma once
// One machine's link without its transfers: settings, port, logs and display, and the passes that serve them. Knows
// nothing of windows beyond DownloadWindow, and nothing of files or protocols.
//
// The monitor thread owns the engine while it runs. Everything is for that thread (post it) unless it says otherwise.

#include "base/Timer.h"
#include "engine/CommandQueue.h"
#include "engine/DisplayTicker.h"
#include "engine/EngineLogs.h"
#include "engine/EngineSetup.h"
#include "engine/StatusDisplay.h"
#include "files/KelFile.h"
#include "line/LineService.h"
#include "line/LineTrace.h"
#include "line/TrafficQueue.h"
#include "settings/DownloadSettings.h"
#include "settings/SettingsStore.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>

namespace tarvin {

class CommsMonitor;

class LinkEngine : protected LineClient {
public:
    ~LinkEngine() override;
    LinkEngine(const LinkEngine&) = delete;
    LinkEngine& operator=(const LinkEngine&) = delete;

    // The thread that made the engine: StartMonitor hands the engine to the monitor thread, Terminate takes it back for
    // good. Create loads the settings and opens the port; Terminate closes it and saves them. A subclass terminates in
    // its destructor, while the monitor thread may still call its operations.
    void Create();
    void StartMonitor();
    void Terminate();

    // Any thread.
    void Post(CommandQueue::Command command);
    EngineSnapshot Snapshot() const { return display.Latest(); }
    TrafficQueue& Traffic() { return traffic; }

    // Operations of the window.
    const DownloadSettings& Settings() const { return settings; }
    const KelText& MachineName() const { return machineName; }
    // Sets the port up anew.
    void ApplySettings(const DownloadSettings& newSettings);
    // Leaves the port alone: for settings that say nothing about it.
    void KeepSettings(const DownloadSettings& newSettings);
    // Which of the controller's signals are heeded under hardware flow control.
    void SetHandshakes(bool isCtsHeeded, bool isDsrHeeded);
    // Traces the line in a fresh file, whose name is kept for the next time. The snapshot tells whether it could be
    // written.
    void StartCommsLog(const std::filesystem::path& path);
    // The same for a log that is nobody's choice of the day: rolled over at a size, and its name not kept.
    void StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit);
    void StopCommsLog();

    // The monitor's loop: one pass over commands, line and timers, true if the next is due at once; and the wait until
    // there is something to do again.
    bool RunPass();
    void WaitForWork();
    // Makes WaitForWork return. Any thread.
    void WakeMonitor() { line.Wake(); }

protected:
    // `machineName` names the settings file and stands in captions.
    LinkEngine(EngineSetup setup, KelText machine);

    // Stops the timers of the subclass for good.
    virtual void StopTimers() = 0;
    // The port has vanished, and whatever was on its way is lost. Ends a transfer that would not notice the gap.
    virtual void EndUnsafeTransfer() = 0;

    // Takes one message out of the receive buffer into `messageText`; returns its length, 0 if there is none.
    std::size_t ExtractMessage(std::uint8_t terminator, bool keepTerminator);
    void ClearMessage() { messageText.clear(); }

    // Puts the present state in front of the user at once. True if that changed anything.
    bool ShowStatus();
    // No display until all that is queued has left the driver.
    void FreezeDisplayUntilSent();
    void SetProgress(std::int64_t position, std::int64_t range) { display.SetProgress(position, range); }
    void SetCaption(KelText caption) { display.Edit().caption = std::move(caption); }
    void ShowMessage(const MessageBoxText& box) { window.ShowMessage(box); }
    // Set once the program is to end: what takes long looks at it.
    const std::atomic<bool>& IsClosing() const { return isClosing; }

    DownloadSettings settings;
    const KelText machineName;
    TransferState transferState = TransferState::NoLink;
    std::string messageText;
    KelFile transferFile;
    KelText transferPath; // of the file on its way, as status texts show it
    KelText fileName;     // its number, or its bare name
    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0;

    const Clock& clock;
    DownloadWindow& window;
    TimerQueue timers;
    TrafficQueue traffic;
    LineTrace trace;
    EngineLogs logs;
    LineService line;
    StatusDisplay display;

private:
    void OnOverrun() override;
    void OnOverrunEnded() override;
    void OnLinkLost() override;

    void OpenPort();
    void ReopenPort();
    void ShowLink();
    bool HasNews();
    void LogStatus(const StatusDescription& description);

    SettingsStore store;
    CommandQueue commands;
    KelText peerName = u"Unknown";
    bool isCreated = false;
    std::atomic<bool> isClosing = false;
    bool resumesDisplayWhenSent = false;
    std::int64_t shownByteCount = 0;
    KelText reportedLine; // the status that is in the activity log, while it is shown
    DisplayTicker displayTicker;
    Timer reopenPort;
    std::unique_ptr<CommsMonitor> monitor;
};

}
