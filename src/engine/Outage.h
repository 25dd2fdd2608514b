#pragma once
// What the user hears of an outage of the port: each kind of failure once, and only if it has lasted for three seconds.
// An adapter that is plugged in again at once is worth no box. Monitor thread.

#include "base/Timer.h"
#include "engine/EngineEvents.h"
#include "line/PortLink.h"

#include <optional>
#include <vector>

namespace tarvin {

class Outage {
public:
    Outage(EngineEvents& events, TimerQueue& timers, const Clock& clock);

    // A step of the work on the port has failed. A problem of a port that works all the same is told at once. True if
    // the problem is the first of its kind in this outage.
    bool Note(const PortProblem& problem);
    // To be called after each look. The outage is over when the port has worked for a second: a device may open and
    // then fail at once.
    void Follow(bool isWorking);

private:
    struct Failure {
        PortProblem problem;
        Clock::TimePoint since;
        bool isTold = false;
    };

    void TellLasting();
    void Tell(const PortProblem& problem);

    EngineEvents& events;
    const Clock& clock;
    std::vector<Failure> failures; // of the present outage, one of each kind
    std::optional<Clock::TimePoint> workingSince;
    Timer look;
};

}
