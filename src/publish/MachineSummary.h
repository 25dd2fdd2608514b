#pragma once
// A machine's state in a few words and one number, for people and for monitoring systems. Any thread.

#include "publish/KnownMachines.h"

namespace tarvin {

// The exit codes of tarvindl-status.
inline constexpr int allWell = 0;
inline constexpr int needsAttention = 1; // a failure not seen, or a hold or silence over the limit of the machine
inline constexpr int notServed = 2;      // no link, or no program that runs
inline constexpr int notKnown = 3;

struct MachineSummary {
    // One or two words: ready, preparing, sending, receiving, held, silent, failed, no link, not running, died,
    // unknown. English in every language, so that a script can rely on them.
    KelText state;
    int exitCode = allWell;
    KelText number;             // of the file on its way, or of the failure that the state tells
    std::optional<int> percent; // of a file whose size is known
    std::int64_t byteCount = 0; // of the file on its way
    std::optional<double> linesPerSecond;
    std::int64_t errors = 0; // damaged messages and errors of the driver
    std::int64_t repeats = 0;
    std::optional<SystemTime> since;
    KelText remark; // more of it, such as the reason of a failure
};

MachineSummary Summarise(const KnownMachine& machine, const Present& present);

}
