#pragma once
// Brings what the engine tells from its threads to the user-interface thread, without ever making the engine wait.
// Knows nothing of what is shown.

#include "engine/DownloadWindow.h"
#include "ui/Wx.h"

#include <atomic>
#include <functional>

namespace tarvin {

// Made and destroyed by the user-interface thread, which also calls the receivers. Outlives the engine.
class EngineEvents : public DownloadWindow {
public:
    struct Receivers {
        // There is a new snapshot; however many there were meanwhile, this is called once.
        std::function<void()> snapshotChanged;
        std::function<void()> trafficArrived;
        std::function<void(const MessageBoxText&)> showMessage;
        std::function<void()> drawAttention;
        std::function<void(const DownloadSettings&)> settingsChanged;
    };

    // What was told before waits until now.
    void Attach(Receivers newReceivers);
    // From now on nobody is told any more.
    void Detach();

    // Runs `call` on the user-interface thread, unless the receivers are gone by then. Any thread.
    void Post(std::function<void()> call);

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    void TrafficArrived() override;
    void ShowMessage(const MessageBoxText& box) override;
    void DrawAttention() override;
    void SettingsChanged(const DownloadSettings& settings) override;

private:
    wxEvtHandler handler;
    Receivers receivers;
    std::atomic<bool> isSnapshotPending = false;
};

}
