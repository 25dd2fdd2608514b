#pragma once
// Named timers, fired by the thread that owns their queue. They know nothing of what they call.
// A queue and its timers belong to one thread.

#include "base/Clock.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvin {

class Timer;

class TimerQueue {
public:
    // Calls each timer that is due at `now`, once. A callback may start, stop, create and destroy timers.
    void RunDue(Clock::TimePoint now);
    // When the next timer is due; none while no timer runs.
    std::optional<Clock::TimePoint> NextDue() const;

private:
    friend class Timer;
    std::vector<Timer*> running;
};

class Timer {
public:
    enum class Kind { Repeating, OneShot };

    Timer(TimerQueue& ownerQueue, const Clock& timeSource, std::string timerName, Clock::Duration timerPeriod,
          Kind timerKind, std::function<void()> whenDue);
    ~Timer() { Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    // Due one period from now, whether or not it was running.
    void Start();
    void Stop();
    // Holds from the next start on.
    void SetPeriod(Clock::Duration newPeriod) { period = newPeriod; }
    bool IsRunning() const { return isRunning; }
    const std::string& Name() const { return name; }

private:
    friend class TimerQueue;

    TimerQueue& queue;
    const Clock& clock;
    const std::string name;
    Clock::Duration period;
    const Kind kind;
    const std::function<void()> callback;
    Clock::TimePoint due;
    bool isRunning = false;
};

}
