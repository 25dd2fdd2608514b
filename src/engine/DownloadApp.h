#pragma once
// The download engine of one machine, as a program sees it: serves the line on a thread of its own and keeps the state
// of link and transfer. Any thread may call it. The operations post to the monitor thread and return at once.

#include "base/ThreadOwner.h"
#include "engine/MachineControl.h"
#include "files/ProgramRequests.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

namespace tarvin {

class CommsMonitor;
class Monitor;
struct EngineSetup;

class DownloadApp : public MachineControl {
public:
    // `machineName` names the settings file and begins captions.
    DownloadApp(EngineSetup setup, KelText machineName);
    // Stops.
    ~DownloadApp() override;
    DownloadApp(const DownloadApp&) = delete;
    DownloadApp& operator=(const DownloadApp&) = delete;

    // Loads the settings, then opens the port and serves the line on the monitor thread; problems are told through the
    // events. Operations that were called before take effect now. Once, and on the thread that calls Stop.
    void Start();
    // Ends a transfer, closes the port, saves the settings and writes the logs. Returns when the monitor thread has
    // ended, within a second whatever the line does, unless the system takes longer to open the port. A disk that does
    // not take the logs costs two seconds more; the lines that are lost then are told through the events. Does nothing
    // the second time.
    void Stop() override;

    // Calls `beat` on the monitor thread: in a pass as soon as the port has been tried, and then once in each `period`
    // in which the thread makes passes; without a period only the first time. It must return at once. For a watchdog:
    // a thread that hangs does not call. Takes effect once.
    void SetHeartbeat(std::optional<std::chrono::microseconds> period, std::function<void()> beat);

    const KelText& MachineName() const override;
    // What a window shows, as it was published last.
    EngineSnapshot Snapshot() const override;
    // The trace of the line.
    TrafficQueue& Traffic() override;
    bool TakesOrders() const override { return true; }

    // Takes the settings over. Opens the port anew, which ends a transfer, if ReopensPort says so (PortSettings.h), or
    // if the port is not configured. Another kind of controller is served at once.
    void ApplySettings(DownloadSettings settings) override;
    // Takes the settings over and leaves port and protocol alone: for settings that say nothing new about them.
    void KeepSettings(DownloadSettings settings) override;
    // Takes over what other programs have changed in the settings file since it was loaded; blocks for the disk. What
    // the user has changed meanwhile, and what the program has learned, stays. Where the port has to be opened anew,
    // that waits for the end of a transfer that is under way: `answer` then says Later. Refused: the file cannot be
    // used, which the user is told, and the settings stay as they are. `answer` is called on the monitor thread; it is
    // destroyed uncalled if the engine stops before. Requires that Start has returned.
    void ReloadSettings(std::function<void(RequestAnswer)> answer);
    // Which signals of the controller hold the line under hardware flow control. Opens the port anew like
    // ApplySettings.
    void SetHandshakes(bool heedsCts, bool heedsDsr) override;

    // Logs the line in a fresh file and stores its path in the settings. The log counts as on at once; if the file
    // cannot be written, a message box tells it, and a snapshot shows the log as off.
    void StartCommsLog(std::filesystem::path path) override;
    // Like StartCommsLog, but rolls over at `sizeLimit` bytes and does not store the path in the settings.
    void StartRollingCommsLog(std::filesystem::path path, std::uint64_t sizeLimit);
    void StopCommsLog() override;

    // Transfers by hand, only if no file is on its way. For a machine that does not ask, both begin at once and are
    // refused without a link. Under a conversation SendFile does nothing, and ReceiveFile waits for the next upload of
    // the controller, for 10 minutes. The last three do nothing without such a transfer.
    void SendFile(std::filesystem::path path) override;
    void ReceiveFile(std::filesystem::path path) override;
    void CompleteUpload() override;
    void CancelUpload() override;
    void CancelDownload() override;

    // Tells the user and the logs something that has happened to the machine's files.
    void Announce(KelText announcement) override;

    // A user has seen that transfers of this file have failed.
    void MarkSeen(KelText number, TransferDirection direction) override;

    // Ends a transfer and puts the link back to waiting.
    void ResetLink() override;
    // Sends XOFF, and XON three seconds later.
    void SendXoffTest() override;
    // Sends a message that comes back if a plug joins the transmit and receive lines. The state tells the verdict.
    void StartLoopbackTest() override;

private:
    const std::unique_ptr<Monitor> monitor;
    std::unique_ptr<CommsMonitor> thread;
    bool wasStarted = false;
    ThreadOwner starter; // the thread of Start and Stop
};

}
