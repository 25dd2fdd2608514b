#include "base/Timer.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarvin {

Timer::Timer(TimerQueue& queue, const Clock& clock, std::string name, Clock::Duration period, Kind kind,
             std::function<void()> callback)
    : queue(queue), clock(clock), name(std::move(name)), period(period), kind(kind), callback(std::move(callback)) {
    assert(this->callback);
}

void Timer::Start() {
    due = clock.Now() + period;
    if (!isRunning)
        queue.running.push_back(this);
    isRunning = true;
}

void Timer::Stop() {
    std::erase(queue.running, this);
    isRunning = false;
}

std::optional<Clock::TimePoint> TimerQueue::NextDue() const {
    if (running.empty())
        return std::nullopt;
    return (*std::min_element(running.begin(), running.end(), [](Timer* a, Timer* b) { return a->due < b->due; }))->due;
}

bool TimerQueue::RunDue(Clock::TimePoint now) {
    // Callbacks change `running`, so the due timers are collected first.
    std::vector<Timer*> due;
    std::copy_if(running.begin(), running.end(), std::back_inserter(due),
                 [&](Timer* timer) { return timer->due <= now; });
    for (Timer* timer : due) {
        // An earlier callback may have stopped or destroyed this timer, or restarted it. The address is compared before
        // it is followed. A new timer at the address of a destroyed one counts as restarted.
        if (std::find(running.begin(), running.end(), timer) == running.end() || timer->due > now)
            continue;
        // Ticks that were missed are dropped: the next one is a whole period away.
        timer->due = now + timer->period;
        if (timer->kind == Timer::Kind::OneShot)
            timer->Stop();
        // A copy, because the callback may destroy its own timer.
        const auto whenDue = timer->callback;
        whenDue();
    }
    return !due.empty();
}

}
