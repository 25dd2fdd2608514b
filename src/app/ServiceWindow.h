#pragma once
// The window of a program that has none: what a user would see becomes lines of output, and what a user would be asked
// is answered unattended. Knows nothing of the engine beyond DownloadWindow.

#include "app/ServiceOutput.h"
#include "engine/DownloadWindow.h"

namespace tarvin {

class ServiceWindow : public DownloadWindow {
public:
    explicit ServiceWindow(ServiceOutput& serviceOutput) : output(serviceOutput) {}

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    // Nobody reads the trace; so the engine makes none.
    void TrafficArrived() override {}
    void ShowMessage(const MessageBoxText& box) override { output.Add(UnattendedNote(box)); }
    void DrawAttention() override {}

private:
    ServiceOutput& output;
    KelText shownStatus;
    KelText shownLink;
};

}
