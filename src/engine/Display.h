#pragma once
// What the user sees of the engine, and when: the snapshot, its timer, and the activity log, which records what is
// seen. Button states and end dialogs are derived from the state here. Monitor thread, apart from Latest.

#include "base/Mutex.h"
#include "base/Timer.h"
#include "engine/EngineEvents.h"
#include "engine/Logs.h"
#include "engine/TransferRate.h"
#include "line/LineService.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"
#include "transfer/Transfer.h"

namespace tarvin {

class Display : public TransferObserver {
public:
    // The parts that are shown. They outlive the display; their constructors may run after its own.
    struct Sources {
        const Transfer& transfer;
        LineService& line;
        const DownloadSettings& settings;
        const KelText& machineName;
    };

    Display(const Sources& sources, EngineEvents& events, Logs& logs, TimerQueue& timers, const Clock& clock);

    // Shows the present state and begins to follow it, ten times a second while something changes.
    void Start();
    void Stop() { tick.Stop(); }

    void OnStateChanged(Urgency urgency) override;
    void OnNamed(const TransferName& name) override;
    void OnEnded(TransferRecord record) override;
    void ShowMessage(const MessageBoxText& box) override { events.ShowMessage(box); }

    // The port was opened or lost.
    void ShowLink();
    // Whether the controller begins every transfer. The window offers its action buttons either way. Shown with the
    // next change of link or state.
    void ShowConversation(bool isConversation);
    // Tells the user and the logs something that is no status. It stays beside the status for a minute.
    void Announce(KelTextView announcement);
    // Puts the transfers of earlier runs of the program before those of this one.
    void ShowPastTransfers(TransferRecords past);
    // A user has seen that transfers of this file have failed.
    void MarkSeen(KelTextView number, TransferDirection direction);
    // Whether the window offers its action buttons.
    void ShowButtons(bool areVisible);
    void ShowCommsLog(bool isOn) { next.isCommsLogOn = isOn; }
    // For a change that no state tells.
    void ShowNow() { Show(); }
    // Publishes even without a change, for a window whose switch is ahead of the engine.
    void ShowAgain();
    // To be called at the end of each pass over the line.
    void FollowPass();

    // The snapshot that was published last. Any thread.
    EngineSnapshot Latest() const EXCLUDES(mutex);

private:
    void OnTick();
    void FollowAt(Clock::Duration period);
    bool Show();
    void ShowHold();
    void ShowProgress();
    void ShowRecent(TransferRecords records);
    bool Publish();
    void LogStatus(const StatusDescription& description);
    void LogQuality();
    Lamps PresentLamps() const;
    bool HasNews() const;

    const Sources sources;
    EngineEvents& events;
    Logs& logs;
    const Clock& clock;
    EngineSnapshot next; // under construction, not yet seen
    mutable Mutex mutex;
    EngineSnapshot latest GUARDED_BY(mutex);
    TransferRate rate;
    std::int64_t shownByteCount = 0;
    KelText loggedLine; // the status that is in the activity log, for as long as it is shown
    Clock::TimePoint endOfAnnouncement;
    bool isQuiet = false; // nothing has changed at the last tick
    Timer tick;
};

}
