#pragma once
// What the engine needs of whoever shows it: a window, or a service without one. Knows nothing of how it is shown.
//
// All operations are called on the engine's threads and return at once: they post, they never show, wait or ask.

#include "line/LineService.h"
#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"
#include "transfer/TransferState.h"

#include <cstdint>

namespace tarvin {

// A button of the main window that the engine steers.
struct ActionButton {
    bool isVisible = false;
    bool isEnabled = true;
    bool operator==(const ActionButton&) const = default;
};

enum class EndDialog { None, Download, Upload };

// All that a window shows of the engine, as one plain value.
struct EngineSnapshot {
    TransferState transferState = TransferState::NoLink;
    KelText statusLine;
    std::int64_t progressPosition = 0;
    std::int64_t progressRange = 0;
    Lamps lamps;
    KelText caption;
    // The port and its line settings, or the same without a link.
    KelText linkTitle;
    // Whether a port is open and set up.
    bool hasLink = false;
    // The file that is, or was last, on its way.
    KelText transferPath;
    ActionButton sendFile;
    ActionButton receiveFile;
    ActionButton test = {true, true};
    EndDialog endDialog = EndDialog::None;
    bool isCommsLogOn = false;
    bool operator==(const EngineSnapshot&) const = default;
};

class DownloadWindow {
public:
    virtual ~DownloadWindow() = default;

    // Something in the snapshot has changed. The value is good for the call; DownloadApp::Snapshot has the latest one.
    virtual void SnapshotChanged(const EngineSnapshot& snapshot) = 0;
    // The traffic queue is no longer empty.
    virtual void TrafficArrived() = 0;
    // A message box; the engine does not wait for its answer.
    virtual void ShowMessage(const MessageBoxText& box) = 0;
    // A file is to be sent and the user is wanted.
    virtual void DrawAttention() = 0;
    // What the engine works with from now on: it has read its settings, or remembers the folder of a file that the user
    // has picked.
    virtual void SettingsChanged(const DownloadSettings&) {}
};

}
