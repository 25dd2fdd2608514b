#pragma once
// What an engine tells the program that runs it: a window, or a service without one. All calls come from the monitor
// thread and return at once: they post or print, and never show, wait or ask.

#include "engine/EngineSnapshot.h"

namespace tarvin {

struct DownloadSettings;
struct MessageBoxText;

class EngineEvents {
public:
    virtual ~EngineEvents() = default;

    // A new snapshot, or the last one again after StartCommsLog. Valid during the call; DownloadApp::Snapshot returns
    // the latest at any time.
    virtual void SnapshotChanged(const EngineSnapshot& snapshot) = 0;
    // The traffic queue is no longer empty.
    virtual void TrafficArrived() = 0;
    // A message box. The engine does not wait for its answer.
    virtual void ShowMessage(const MessageBoxText& box) = 0;
    // The port works again: boxes about its outage have nothing more to say.
    virtual void OutageEnded() {}
    // The settings that the engine works with from now on. They are new when they have been loaded, and when the engine
    // remembers the folder of a file that the user has picked.
    virtual void SettingsChanged(const DownloadSettings& settings) = 0;
};

}
