#pragma once
// Everything that a window shows of the engine, as one plain value.

#include "port/SerialPort.h"
#include "transfer/LineQuality.h"
#include "transfer/TransferState.h"

#include <cstdint>

namespace tarvin {

// A button of the main window that follows the engine.
struct ActionButton {
    bool isVisible = false;
    bool isEnabled = true;
    bool operator==(const ActionButton&) const = default;
};

struct Lamps {
    bool received = false;    // since the snapshot before
    bool transmitted = false; // since the snapshot before
    LineHolds holds;
    bool operator==(const Lamps&) const = default;
};

struct EngineSnapshot {
    TransferState transferState = TransferState::NoLink;
    KelText statusLine;
    // Something about the line that a user has to know beside the status, such as a hold. Empty without it.
    KelText notice;
    // Something that has happened and is no status. Empty again a minute later.
    KelText announcement;
    // Of the transfer that is under way, or was last.
    LineQuality quality;
    std::int64_t progressPosition = 0;
    std::int64_t progressRange = 0;
    Lamps lamps;
    KelText caption;
    // The machine's name with the port and its settings, or with "No Link".
    KelText linkTitle;
    // Whether a port is open and configured.
    bool hasLink = false;
    // The path of the file that is on its way, or was last.
    KelText transferPath;
    // Whether the controller begins every transfer.
    bool isConversation = false;
    ActionButton sendFile;
    ActionButton receiveFile;
    ActionButton test = {true, true};
    EndDialog endDialog = EndDialog::None;
    // A comms log is written, or its file is being opened.
    bool isCommsLogOn = false;
    bool operator==(const EngineSnapshot&) const = default;
};

}
