#pragma once
// A machine that another program serves, as a window shows it: everything comes from what that program publishes. One
// thread.

#include "base/Clock.h"
#include "engine/EngineEvents.h"
#include "engine/MachineControl.h"
#include "line/TrafficQueue.h"
#include "publish/KnownMachines.h"

#include <filesystem>
#include <memory>

namespace tarvin {

class WatchedMachine : public MachineControl {
public:
    // Clock and events outlive the object.
    WatchedMachine(std::filesystem::path installation, KelText machineName, EngineEvents& events, const Clock& clock);

    const KelText& MachineName() const override { return machineName; }
    // Its times are of the clock. Its buttons can be seen and are disabled.
    EngineSnapshot Snapshot() const override { return snapshot; }
    // Stays empty: traffic is not published.
    TrafficQueue& Traffic() override { return traffic; }
    void Stop() override {}

    bool TakesOrders() const override { return false; }
    // Which program serves the machine, or that none does any more.
    KelText Remark() const override { return remark; }
    // Reads what is published, and tells a change by the events. A program that ends or dies is a change too; one that
    // serves the machine again is shown again.
    void Look() override;

    void ApplySettings(DownloadSettings) override;
    void KeepSettings(DownloadSettings) override;
    void SetHandshakes(bool, bool) override;
    void StartCommsLog(std::filesystem::path) override;
    void StopCommsLog() override;
    void SendFile(std::filesystem::path) override;
    void ReceiveFile(std::filesystem::path) override;
    void CompleteUpload() override;
    void CancelUpload() override;
    void CancelDownload() override;
    void Announce(KelText) override;
    void MarkSeen(KelText, TransferDirection) override;
    void ResetLink() override;
    void SendXoffTest() override;
    void StartLoopbackTest() override;

private:
    Present PresentByAnchor();
    void Show(EngineSnapshot next, KelText nextRemark);
    KelText RemarkOn(const KnownMachine& machine) const;

    const std::filesystem::path installation;
    const KelText machineName;
    EngineEvents& events;
    const Clock& clock;
    TrafficQueue traffic;
    EngineSnapshot snapshot;
    KelText remark;
    DownloadSettings settings;
    MachineHolder lastServer;
    Present anchor;
};

}
