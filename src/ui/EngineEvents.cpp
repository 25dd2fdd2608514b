#include "ui/EngineEvents.h"

#include <utility>

namespace tarvin {

void EngineEvents::Attach(Receivers newReceivers) {
    receivers = std::move(newReceivers);
}

void EngineEvents::Detach() {
    // What is on its way finds nobody.
    receivers = {};
}

void EngineEvents::Post(std::function<void()> call) {
    handler.CallAfter([this, kept = std::move(call)] {
        if (receivers.snapshotChanged)
            kept();
    });
}

void EngineEvents::SnapshotChanged(const EngineSnapshot&) {
    if (isSnapshotPending.exchange(true))
        return;
    Post([this] {
        isSnapshotPending = false;
        receivers.snapshotChanged();
    });
}

void EngineEvents::TrafficArrived() {
    Post([this] { receivers.trafficArrived(); });
}

void EngineEvents::ShowMessage(const MessageBoxText& box) {
    Post([this, box] { receivers.showMessage(box); });
}

void EngineEvents::DrawAttention() {
    Post([this] { receivers.drawAttention(); });
}

void EngineEvents::SettingsChanged(const DownloadSettings& settings) {
    Post([this, settings] { receivers.settingsChanged(settings); });
}

}
