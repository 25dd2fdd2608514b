#pragma once
// The download engine: the state of link and transfer and the operations on it. Transfers raw bytes by itself; a
// subclass that speaks a controller's protocol overrides ProcessReceivedData, SendNextBlock and BeginDownload. Knows
// nothing of windows beyond DownloadWindow, and nothing of any protocol.
//
// The monitor thread owns the engine while it runs. Everything is for that thread (post it) unless it says otherwise.

#include "engine/CommandQueue.h"
#include "engine/DisplayTicker.h"
#include "engine/EngineLogs.h"
#include "engine/EngineSetup.h"
#include "engine/FileImage.h"
#include "engine/LineService.h"
#include "engine/LineTrace.h"
#include "engine/StatusDisplay.h"
#include "engine/TrafficQueue.h"
#include "framework/KelFile.h"
#include "framework/Timer.h"
#include "settings/DownloadSettings.h"
#include "settings/SettingsStore.h"

#include <atomic>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin {

class CommsMonitor;

class DownloadApp : private LineClient {
public:
    // `machineName` names the settings file and stands in captions.
    DownloadApp(EngineSetup setup, KelText machineName);
    ~DownloadApp() override;
    DownloadApp(const DownloadApp&) = delete;
    DownloadApp& operator=(const DownloadApp&) = delete;

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
    void ApplySettings(const DownloadSettings& newSettings);
    void SendFile(const std::filesystem::path& path);
    void ReceiveFile(const std::filesystem::path& path);
    void CompleteUpload();
    void CancelUpload();
    void CancelDownload();
    void EndOfServe();
    void SendXoffTest();
    void StartLoopbackTest();
    // Traces the line in a fresh file, whose name is kept for the next time.
    void StartCommsLog(const std::filesystem::path& path);
    // The same for a log that is nobody's choice of the day: rolled over at a size, and its name not kept.
    void StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit);
    void StopCommsLog();
    // Sends the text each `period` from now on.
    void SetPingText(std::string text, std::chrono::milliseconds period);

    // The monitor's loop: one pass over commands, line and timers, true if the next is due at once; and the wait
    // until there is something to do again.
    bool RunPass();
    void WaitForWork();
    // Makes WaitForWork return. Any thread.
    void WakeMonitor() { line.Wake(); }

protected:
    // Takes what has been received. Called after each read and while bytes are left. Raw: into the upload's file.
    virtual void ProcessReceivedData();
    // Called whenever the driver has sent all it was given and the line is not held. Raw: the next block of the file.
    virtual void SendNextBlock();
    // The transmit delay is over and the state is DownloadPreparation. Raw: calls the user.
    virtual void BeginDownload();
    // The port has vanished, and whatever was on its way is lost. Raw: ends the transfer, for nothing would notice a
    // gap.
    virtual void EndUnsafeTransfer();
    // The ping timer's tick.
    virtual void Ping();
    // Asks the other station for its list of files, where stations keep their files in step.
    virtual void RequestFileList() {}

    // Sends the start character if there is one and begins the download, at once or after the transmit delay.
    void DownloadNow();
    // Gives up a download whose delay still runs.
    void DropDelayedDownload() { downloadNow.reset(); }
    // Set once the program is to end: what takes long looks at it.
    const std::atomic<bool>& IsClosing() const { return isClosing; }
    // Queues the bytes for the line; no formatting, a percent sign is a byte like any other.
    void SendText(std::string_view text) { line.Transmit().AppendText(text); }
    void SendChar(std::uint8_t byte, bool continuation) { line.Transmit().Append(byte, continuation); }
    // Takes one message out of the receive buffer into `messageText`; returns its length, 0 if there is none.
    std::size_t ExtractMessage(std::uint8_t terminator, bool keepTerminator);
    void ClearMessage() { messageText.clear(); }

    // Puts the present state in front of the user at once. True if that changed anything.
    bool ShowStatus();
    void SetProgress(std::int64_t position, std::int64_t range) { display.SetProgress(position, range); }
    void SetCaption(KelText caption) { display.Edit().caption = std::move(caption); }
    void ShowMessage(const MessageBoxText& box) { window.ShowMessage(box); }

    DownloadSettings settings;
    const KelText machineName;
    TransferState transferState = TransferState::NoLink;
    std::string messageText;
    KelFile transferFile;
    KelText transferPath; // of the file on its way, as status texts show it
    KelText fileName;     // its number, or its bare name
    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0;

private:
    void OnReceived() override;
    void OnLineFree() override;
    void OnOverrun() override;
    void OnOverrunEnded() override;
    void OnLinkLost() override;

    void OpenPort();
    void ReopenPort();
    void ShowLink();
    bool HasNews();
    void CheckLoopback();
    void StartDownload();
    void SendBytes(int count);
    void EndOfServeTick();
    void ResetLink();
    void EndTransfer(TransferState state);

    const Clock& clock;
    DownloadWindow& window;
    SettingsStore store;
    CommandQueue commands;
    TrafficQueue traffic;
    LineTrace trace;
    EngineLogs logs;
    LineService line;
    StatusDisplay display;
    FileImage fileImage;

    KelText peerName = u"Unknown";
    std::string pingText;
    bool isCreated = false;
    std::atomic<bool> isClosing = false;
    bool resumesDisplayWhenSent = false;
    std::int64_t shownByteCount = 0;

    TimerQueue timers;
    DisplayTicker displayTicker;
    Timer pingNow;
    Timer endOfServe;
    Timer testXon;
    Timer reopenPort;
    std::unique_ptr<Timer> downloadNow;
    std::unique_ptr<CommsMonitor> monitor;
};

}
