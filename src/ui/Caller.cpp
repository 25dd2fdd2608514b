#include "ui/Caller.h"

#include "settings/DownloadSettings.h"

#include <algorithm>
#include <utility>

#include <wx/utils.h>

namespace tarvin {

namespace {

// The window itself, or one of its dialogs.
bool IsInFront() {
    return std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(), [](wxWindow* window) {
        auto* top = dynamic_cast<wxTopLevelWindow*>(window);
        return top != nullptr && top->IsActive() && !top->IsIconized();
    });
}

}

Caller::Caller(wxTopLevelWindow& window, KelText machineName, const Clock& clock)
    : window(window),
      clock(clock),
      policy(std::move(machineName), std::chrono::system_clock::now()),
      notifications(window) {
    timer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { LookAgain(); });
}

void Caller::Look(const EngineSnapshot& snapshot, const DownloadSettings& settings) {
    latest = snapshot;
    patience = std::chrono::minutes(std::max(settings.attentionMinutes, 0));
    hasSound = settings.callsWithSound != 0;
    LookAgain();
}

void Caller::LookAgain() {
    const std::vector<Call> calls = policy.Look(latest, clock.Now(), patience);
    for (const Call& call : calls)
        Place(call);
    // One sound for all of them: several at once are no more than one.
    if (hasSound && !calls.empty())
        wxBell();
    if (const auto due = policy.NextDue()) {
        // Never earlier than due: the timer would run again and again until then.
        const auto wait = std::chrono::ceil<std::chrono::milliseconds>(*due - clock.Now());
        timer.StartOnce(static_cast<int>(std::clamp<std::int64_t>(wait.count(), 1, 24 * 3600 * 1000)));
    } else {
        timer.Stop();
    }
}

// A user who looks at the window sees it there.
void Caller::Place(const Call& call) {
    if (IsInFront())
        return;
    notifications.Show({static_cast<int>(call.kind), call.title, call.text, call.isUrgent});
    window.RequestUserAttention(call.isUrgent ? wxUSER_ATTENTION_ERROR : wxUSER_ATTENTION_INFO);
}

}
