#include "ui/WindowEvents.h"

#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"

#include <cassert>
#include <utility>

namespace tarvin {

void WindowEvents::Attach(Receiver& newReceiver) {
    assert(receiver == nullptr);
    receiver = &newReceiver;
}

void WindowEvents::Detach() {
    receiver = nullptr;
}

void WindowEvents::Post(std::function<void()> call) {
    handler.CallAfter([this, kept = std::move(call)] {
        if (receiver != nullptr)
            kept();
    });
}

void WindowEvents::SnapshotChanged(const EngineSnapshot&) {
    // One event in the toolkit's queue is enough: its receiver asks the engine for the latest snapshot.
    if (isSnapshotPending.exchange(true))
        return;
    Post([this] {
        // Cleared first, so that a snapshot that comes during the call posts the next event.
        isSnapshotPending = false;
        receiver->OnSnapshotChanged();
    });
}

void WindowEvents::TrafficArrived() {
    Post([this] { receiver->OnTrafficArrived(); });
}

void WindowEvents::ShowMessage(const MessageBoxText& box) {
    Post([this, box] { receiver->OnMessage(box); });
}

void WindowEvents::DrawAttention() {
    Post([this] { receiver->OnAttentionWanted(); });
}

void WindowEvents::SettingsChanged(const DownloadSettings& settings) {
    Post([this, settings] { receiver->OnSettingsChanged(settings); });
}

}
