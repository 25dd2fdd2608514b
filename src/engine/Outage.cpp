#include "engine/Outage.h"

#include "base/Messages.h"
#include "messages/MessageAdvice.h"

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

// What the failure means to a user. The steps that configure a port fail for one of two reasons: the settings do not
// suit it, or its driver is faulty.
MessageKind MeaningOf(const PortProblem& problem) {
    if (problem.stepName == text::portStep::closePrevious)
        return MessageKind::PortNotClosed;
    if (problem.kind == PortProblem::Kind::Warning)
        return MessageKind::PortUnusual;
    if (problem.kind == PortProblem::Kind::Mode)
        return MessageKind::SettingsRefused;
    const bool isLost = problem.stepName == text::portStep::checkStatus || problem.stepName == text::portStep::read ||
                        problem.stepName == text::portStep::write;
    return isLost ? MessageKind::LinkLost : MessageKind::PortNotOpened;
}

}

Outage::Outage(EngineEvents& events, TimerQueue& timers, const Clock& clock)
    : events(events),
      clock(clock),
      look(timers, clock, "DownloadApp::Outage", lookPeriod, Timer::Kind::Repeating, [this] { TellLasting(); }) {}

bool Outage::Note(const PortProblem& problem) {
    if (problem.kind == PortProblem::Kind::Warning) {
        Tell(problem);
        return true;
    }
    workingSince.reset();
    const bool isKnown =
        std::ranges::any_of(failures, [&](const Failure& failure) { return IsSameKind(failure.problem, problem); });
    if (!isKnown)
        failures.push_back({problem, clock.Now()});
    if (!look.IsRunning())
        look.Start();
    return !isKnown;
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
    events.OutageEnded();
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
    MessageBoxText box = WithAdvice(MeaningOf(problem), {problem.text, problem.stepName, okOnly | iconExclamation});
    box.endsWithOutage = problem.kind != PortProblem::Kind::Warning;
    events.ShowMessage(box);
}

}
