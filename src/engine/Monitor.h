#pragma once
// Everything that the monitor thread owns: one machine's link, its transfer, its protocol, its display and its logs.
// The program sees DownloadApp alone.

#include "base/Mutex.h"
#include "engine/Display.h"
#include "engine/EngineSetup.h"
#include "engine/LineTests.h"
#include "engine/Network.h"
#include "engine/Outage.h"
#include "files/ProgramRequests.h"
#include "settings/SettingsStore.h"

#include <atomic>
#include <functional>
#include <optional>

namespace tarvin {

class Monitor : private LineClient {
public:
    Monitor(EngineSetup setup, KelText machineName);
    Monitor(const Monitor&) = delete;
    Monitor& operator=(const Monitor&) = delete;

    using Command = std::function<void(Monitor&)>;

    // Any thread.
    // Runs the command before the next pass.
    void Post(Command command) EXCLUDES(commandMutex);
    void Wake() { line.Wake(); }
    // Cancels a write that blocks and a file that takes long to read, now and from now on.
    void PrepareClose();
    // Reads the settings file on the caller's thread, and hands the settings to the monitor thread.
    void ReloadSettings(std::function<void(RequestAnswer)> answer) EXCLUDES(reloadMutex);
    EngineSnapshot Snapshot() const { return display.Latest(); }
    TrafficQueue& Traffic() { return traffic; }
    const KelText& MachineName() const { return machineName; }

    // Loads the settings. Before the monitor thread starts: a window has them before its user can change them.
    void Load();

    // The life of the monitor thread. Open opens the port. Then passes follow one another: each runs commands, looks at
    // the line and fires timers, and returns true if the next is due at once; otherwise WaitForWork comes between.
    // Close runs the last commands, closes the port and saves the settings.
    void Open();
    bool RunPass();
    void WaitForWork();
    void Close();

    // Commands.
    const DownloadSettings& Settings() const { return settings; }
    // Takes the settings over. Opens the port anew, with the protocol that they ask for, if ReopensPort says so or if
    // the port is not configured.
    void ApplySettings(DownloadSettings newSettings);
    // Takes settings over that leave port and protocol unchanged.
    void KeepSettings(DownloadSettings newSettings);
    void SetHandshakes(bool heedsCts, bool heedsDsr);
    void StartCommsLog(const std::filesystem::path& path);
    void StartRollingCommsLog(const std::filesystem::path& path, std::uint64_t sizeLimit);
    void StopCommsLog();
    void SendFile(const std::filesystem::path& path);
    void ReceiveFile(const std::filesystem::path& path);
    void CompleteUpload();
    void CancelUpload();
    void CancelDownload();
    // Ends the transfer that is under way, drops its queued bytes, forgets a received XOFF, and puts the link back to
    // waiting.
    void ResetLink();
    void StartLoopbackTest();

    // Calls `beat` now, and then once in each period, if there is one.
    void StartHeartbeat(std::optional<Clock::Duration> period, std::function<void()> beat);

    // The parts, for commands that concern one of them.
    Display& Shown() { return display; }
    LineTests& Tests() { return tests; }
    Network& Stations() { return network; }
    Sender& Output() { return line; }
    Logs& LogOutput() { return logs; }

private:
    void OnReceived(ReceiveBuffer& received) override;
    void OnLineFree() override { protocol->OnLineFree(); }
    void OnOverrun() override;
    void OnOverrunEnded() override { transfer.EndOverrun(); }
    void OnLinkLost() override;
    void OnPortProblem(const PortProblem& problem) override;
    void OnPortAdvice(const KelText& advice) override { display.Announce(advice); }

    void SaveSettings();
    RequestAnswer TakeReloaded(SettingsStore::LoadResult loaded);
    bool ApplyReloaded();
    void RetryReload();
    void RunCommands() EXCLUDES(commandMutex);
    void ChooseProtocol();
    void OpenPort();
    void ReopenPort();
    // Ends the transfer that is under way, for the protocol too. True if there was one.
    bool AbandonTransfer(KelTextView reason);
    void NoteChecksums(bool sendsChecksums);
    void EndAwaitedUpload(KelTextView reason);
    // Begins the wait for the next upload of the controller.
    void AwaitUpload(const TransferName& name);
    bool RefuseWithoutLink(const TransferName& name, TransferState refused);

    const KelText machineName;
    const Clock& clock;
    EngineEvents& events;
    ThreadOwner thread;
    std::atomic<bool> isClosing = false;
    Mutex commandMutex;
    std::vector<Command> commands GUARDED_BY(commandMutex);
    // Held from the reading of the settings file until its settings are posted: the later reading comes last.
    Mutex reloadMutex;

    // Constructed in this order. The display stores references to the transfer and the line, and uses them after Open.
    SettingsStore store;
    DownloadSettings settings;
    TimerQueue timers;
    TrafficQueue traffic;
    LineTrace trace;
    Logs logs;
    Display display;
    Transfer transfer;
    LineService line;
    LineTests tests;
    Network network;
    Outage outage;
    const ProtocolMaker makeProtocol;
    std::unique_ptr<Protocol> protocol;
    Timer reopenPort;
    Timer endOfAwaited; // of an upload that a user awaits
    // Settings that wait for the end of a transfer, because they reopen the port.
    KelText startNotice; // what the user should know of the settings file
    std::optional<SettingsStore::LoadResult> waitingSettings;
    int idleLooks = 0; // of retryReload, one after the other
    Timer retryReload;
    std::optional<Timer> heartbeat;
};

}
