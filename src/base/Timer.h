#pragma once
// Named timers and the queue that fires them. A queue and its timers belong to one thread.

#include "base/Clock.h"

#include <cassert>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tarvin {

class Timer;

// Outlives its timers.
class TimerQueue {
public:
    TimerQueue() = default;
    ~TimerQueue() { assert(running.empty()); }
    TimerQueue(const TimerQueue&) = delete;
    TimerQueue& operator=(const TimerQueue&) = delete;

    // Calls each timer that is due at `now`, once, and returns whether there was one. A callback may start, stop,
    // create and destroy timers.
    bool RunDue(Clock::TimePoint now);
    // The time at which the next timer is due. None while no timer runs.
    std::optional<Clock::TimePoint> NextDue() const;

private:
    friend class Timer;
    std::vector<Timer*> running;
};

class Timer {
public:
    enum class Kind { Repeating, OneShot };

    Timer(TimerQueue& queue, const Clock& clock, std::string name, Clock::Duration period, Kind kind,
          std::function<void()> callback);
    ~Timer() { Stop(); }
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

    // Makes the timer due one period from now, also if it is running already.
    void Start();
    void Stop();
    // Takes effect at the next start or repetition.
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
