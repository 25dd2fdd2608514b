#include "engine/Outage.h"

#include "messages/MessageReport.h"

#include <algorithm>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto leastDuration = 3s;
constexpr auto lookPeriod = 500ms;
constexpr auto timeToTrust = 1s;

// A device that is away is noticed by whichever step comes first, so all such steps are one kind.
bool IsSameKind(const PortProblem& a, const PortProblem& b) {
    return a.kind == b.kind && (a.kind == PortProblem::Kind::Device || a.stepName == b.stepName);
}

}

Outage::Outage(EngineEvents& events, TimerQueue& timers, const Clock& clock)
    : events(events),
      clock(clock),
      look(timers, clock, "DownloadApp::Outage", lookPeriod, Timer::Kind::Repeating, [this] { TellLasting(); }) {}

void Outage::Note(const PortProblem& problem) {
    if (problem.kind == PortProblem::Kind::Warning) {
        Tell(problem);
        return;
    }
    workingSince.reset();
    const bool isKnown =
        std::ranges::any_of(failures, [&](const Failure& failure) { return IsSameKind(failure.problem, problem); });
    if (!isKnown)
        failures.push_back({problem, clock.Now()});
    if (!look.IsRunning())
        look.Start();
}

void Outage::Follow(bool isWorking) {
    if (failures.empty())
        return;
    if (!isWorking) {
        workingSince.reset();
        return;
    }
    if (!workingSince)
        workingSince = clock.Now();
    if (clock.Now() - *workingSince < timeToTrust)
        return;
    failures.clear();
    workingSince.reset();
    look.Stop();
}

void Outage::TellLasting() {
    for (Failure& failure : failures) {
        if (failure.isTold || clock.Now() - failure.since < leastDuration || workingSince)
            continue;
        failure.isTold = true;
        Tell(failure.problem);
    }
}

void Outage::Tell(const PortProblem& problem) {
    events.ShowMessage({problem.text, problem.stepName, okOnly | iconInformation});
}

}
