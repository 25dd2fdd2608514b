#include "base/Timer.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace tarvin {

Timer::Timer(TimerQueue& ownerQueue, const Clock& timeSource, std::string timerName, Clock::Duration timerPeriod,
             Kind timerKind, std::function<void()> whenDue)
    : queue(ownerQueue),
      clock(timeSource),
      name(std::move(timerName)),
      period(timerPeriod),
      kind(timerKind),
      callback(std::move(whenDue)) {}

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

void TimerQueue::RunDue(Clock::TimePoint now) {
    std::vector<Timer*> due;
    std::copy_if(running.begin(), running.end(), std::back_inserter(due),
                 [&](Timer* timer) { return timer->due <= now; });
    for (Timer* timer : due) {
        // An earlier callback may have stopped or destroyed it, or started it anew.
        if (std::find(running.begin(), running.end(), timer) == running.end() || timer->due > now)
            continue;
        // A late tick is not made up for: the next one is a whole period away.
        timer->due = now + timer->period;
        if (timer->kind == Timer::Kind::OneShot)
            timer->Stop();
        // The callback may destroy its own timer.
        const auto whenDue = timer->callback;
        whenDue();
    }
}

}
