#pragma once
// Carries the events of an engine to the user-interface thread. The engine never waits for a window.

#include "base/Mutex.h"
#include "engine/EngineEvents.h"
#include "messages/MessageReport.h"
#include "ui/Wx.h"

#include <atomic>
#include <deque>
#include <functional>

namespace tarvin {

// Made, attached and destroyed by the user-interface thread. Outlives the engine.
class WindowEvents : public EngineEvents {
public:
    // Called on the user-interface thread.
    class Receiver {
    public:
        // There is a new snapshot. One call may stand for several of the engine's.
        virtual void OnSnapshotChanged() = 0;
        virtual void OnTrafficArrived() = 0;
        virtual void OnMessage(const MessageBoxText& box) = 0;
        virtual void OnOutageEnded() = 0;
        virtual void OnSettingsChanged(const DownloadSettings& settings) = 0;

    protected:
        ~Receiver() = default;
    };

    // Events since construction reach the receiver too if the toolkit's loop has not run since then.
    void Attach(Receiver& newReceiver);
    // Drops the events that are on their way, and all later ones.
    void Detach();

    // The boxes that no receiver has got, and will not get: those that the engine wanted to show while the window
    // closed. Called after Detach.
    std::deque<MessageBoxText> TakeUnseenBoxes() EXCLUDES(mutex);

    // Runs `call` on the user-interface thread. Dropped if no receiver is attached by then. Any thread.
    void Post(std::function<void()> call);

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    void TrafficArrived() override;
    void ShowMessage(const MessageBoxText& box) override EXCLUDES(mutex);
    void OutageEnded() override;
    void SettingsChanged(const DownloadSettings& settings) override;

private:
    wxEvtHandler handler;
    Receiver* receiver = nullptr; // user-interface thread
    std::atomic<bool> isSnapshotPending = false;
    Mutex mutex;
    std::deque<MessageBoxText> boxes GUARDED_BY(mutex); // on their way to the receiver
};

}
