#pragma once
// What a window needs to show one machine and to act on it. An engine of this process implements it, and so does the
// view of a machine that another program serves, which shows everything and takes no orders.

#include "engine/EngineSnapshot.h"

#include <filesystem>

namespace tarvin {

class TrafficQueue;
struct DownloadSettings;

class MachineControl {
public:
    virtual ~MachineControl() = default;

    // Showing. DownloadApp says more.
    virtual const KelText& MachineName() const = 0;
    virtual EngineSnapshot Snapshot() const = 0;
    virtual TrafficQueue& Traffic() = 0;
    virtual void Stop() = 0;

    // False: the operations below this one must not be called, and the window switches off what leads to them. Stays
    // the same.
    virtual bool TakesOrders() const = 0;
    // What stands above everything in the window; empty for an engine of this process. Changes with a snapshot.
    virtual KelText Remark() const { return {}; }
    // Looks whether the state has changed, without a wait. For a window whose machine takes no orders: on its thread,
    // four times a second.
    virtual void Look() {}

    virtual void ApplySettings(DownloadSettings settings) = 0;
    virtual void KeepSettings(DownloadSettings settings) = 0;
    virtual void SetHandshakes(bool heedsCts, bool heedsDsr) = 0;
    virtual void StartCommsLog(std::filesystem::path path) = 0;
    virtual void StopCommsLog() = 0;
    virtual void SendFile(std::filesystem::path path) = 0;
    virtual void ReceiveFile(std::filesystem::path path) = 0;
    virtual void CompleteUpload() = 0;
    virtual void CancelUpload() = 0;
    virtual void CancelDownload() = 0;
    virtual void Announce(KelText announcement) = 0;
    virtual void MarkSeen(KelText number, TransferDirection direction) = 0;
    virtual void ResetLink() = 0;
    virtual void SendXoffTest() = 0;
    virtual void StartLoopbackTest() = 0;
};

}
