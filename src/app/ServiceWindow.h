#pragma once
// The window of a program that has none: what a user would see becomes lines of output, and what a user would be asked
// is answered unattended. Knows nothing of the engine beyond DownloadWindow.

#include "app/ServiceOutput.h"
#include "engine/DownloadWindow.h"
#include "messages/AppInterface.h"

namespace tarvin {

class ServiceWindow : public DownloadWindow {
public:
    ServiceWindow(ServiceOutput& serviceOutput, AppInterface& serviceApp) : output(serviceOutput), app(serviceApp) {}

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    // Nobody reads the trace; so the engine makes none.
    void TrafficArrived() override {}
    void ShowMessage(const MessageBoxText& box) override { app.MessageBox(box); }
    void DrawAttention() override {}

private:
    ServiceOutput& output;
    AppInterface& app;
    KelText shownStatus;
    KelText shownLink;
};

}
