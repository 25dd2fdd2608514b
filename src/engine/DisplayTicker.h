#pragma once
// When the display is brought up to date: ten times a second while something changes, less often while nothing does,
// for each tick wakes the processor and a link may be idle for days. Knows nothing of what is shown. Monitor thread
// only.

#include "base/Timer.h"

#include <functional>

namespace tarvin {

class DisplayTicker {
public:
    // `show` shows the present state and tells whether anything has changed.
    DisplayTicker(TimerQueue& timers, const Clock& clock, std::function<bool()> show);

    // With a whole period until the next tick.
    void Start() { SetQuiet(false); }
    void Stop() { displayStatus.Stop(); }
    // Whether a change that nobody sees yet has to end the quiet.
    bool IsQuiet() const { return isQuiet && displayStatus.IsRunning(); }

private:
    void SetQuiet(bool shallBeQuiet);

    std::function<bool()> showStatus;
    bool isQuiet = false;
    Timer displayStatus;
};

}
