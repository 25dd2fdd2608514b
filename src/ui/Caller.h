#pragma once
// Calls the user of a window: by notifications of the desktop and a request for attention while the window is not in
// front, and by a sound if the settings want one. User-interface thread.

#include "base/Clock.h"
#include "ui/CallPolicy.h"
#include "ui/Notifications.h"

#include <wx/timer.h>

namespace tarvin {

struct DownloadSettings;

class Caller {
public:
    // `clock` is the engine's. `window` and `clock` outlive the object.
    Caller(wxTopLevelWindow& window, KelText machineName, const Clock& clock);

    // Call it with each new snapshot, and with the settings that are in effect.
    void Look(const EngineSnapshot& snapshot, const DownloadSettings& settings);

private:
    void LookAgain();
    void Place(const Call& call);

    wxTopLevelWindow& window;
    const Clock& clock;
    CallPolicy policy;
    Notifications notifications;
    wxTimer timer; // at the time when a call becomes due without a new snapshot
    EngineSnapshot latest;
    std::chrono::minutes patience{0};
    bool hasSound = false;
};

}
