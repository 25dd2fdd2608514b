#pragma once
// Everything that a window shows of the engine, as one plain value.

#include "base/Clock.h"
#include "logging/TransferRecord.h"
#include "port/SerialPort.h"
#include "transfer/LineQuality.h"
#include "transfer/TransferState.h"

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

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

// A file on its way, or one that the machine has asked for and that waits for its delay.
struct TransferProgress {
    TransferDirection direction = TransferDirection::ToMachine;
    bool isWaiting = false; // not yet on its way
    KelText number;
    KelText path;
    KelText comment; // the first of the program
    Clock::TimePoint requestedAt;
    std::int64_t bytesDone = 0;
    std::int64_t bytesTotal = 0; // 0: not known, as for every upload
    std::int64_t linesDone = 0;
    std::int64_t linesTotal = 0; // 0: not known
    // Of the last 30 seconds. None during the first second.
    std::optional<double> linesPerSecond;
    std::optional<double> bytesPerSecond;
    bool operator==(const TransferProgress&) const = default;
};

// Oldest first.
using TransferRecords = std::vector<TransferRecord>;

struct EngineSnapshot {
    TransferState transferState = TransferState::NoLink;
    KelText statusLine;
    // Something about the line that a user has to know beside the status, such as a hold. Empty without it.
    KelText notice;
    // Something that has happened and is no status. Empty again a minute later.
    KelText announcement;
    // Of the transfer that is under way, or was last.
    LineQuality quality;
    std::optional<TransferProgress> progress;
    // The last transfers and refused requests of the machine, and those failures that no user has seen yet. Never null,
    // and never changed.
    std::shared_ptr<const TransferRecords> recent = std::make_shared<const TransferRecords>();
    // Since when output has been held or not taken, if that has lasted for three seconds.
    std::optional<Clock::TimePoint> heldSince;
    // While a file is on its way: when the line last carried a byte.
    std::optional<Clock::TimePoint> quietSince;
    std::optional<Clock::TimePoint> linkLostSince;
    KelText port;
    std::int64_t progressPosition = 0;
    std::int64_t progressRange = 0;
    Lamps lamps;
    KelText caption;
    // The machine's name with the port and its settings, or with "No Link".
    KelText linkTitle;
    // Whether a port is open and configured.
    bool hasLink = false;
    // Whether the present port was open at any time since it was chosen.
    bool hasHadLink = false;
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
