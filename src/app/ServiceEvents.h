#pragma once
// Prints the events of an engine that has no window: each new link or status is a line of output, and a message box is
// answered without a user.

#include "app/ServiceNotify.h"
#include "app/ServiceOutput.h"
#include "engine/EngineEvents.h"
#include "messages/AppInterface.h"

#include <functional>
#include <utility>

namespace tarvin {

class ServiceEvents : public EngineEvents {
public:
    // `messages` is unattended. All outlive the engine.
    ServiceEvents(ServiceOutput& output, ServiceNotify& notify, AppInterface& messages);

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    // The traffic queue stays off: a service shows no trace.
    void TrafficArrived() override {}
    void ShowMessage(const MessageBoxText& box) override;
    void SettingsChanged(const DownloadSettings& settings) override { onSettings(settings); }

    // `callback` gets the settings that the engine works with, on the monitor thread. Before the engine starts.
    void OnSettings(std::function<void(const DownloadSettings&)> callback) { onSettings = std::move(callback); }

private:
    ServiceOutput& output;
    ServiceNotify& notify;
    AppInterface& messages;
    std::function<void(const DownloadSettings&)> onSettings = [](const DownloadSettings&) {};
    TransferState printedState = TransferState::NoLink;
    KelText printedStatus;
    KelText printedLink;
    KelText printedNotice;
    KelText printedAnnouncement;
};

}
