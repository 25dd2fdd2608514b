#pragma once
// The states of machines as lines and as JSON. UTF-8, without characters that a terminal would obey.

#include "publish/MachineSummary.h"

#include <string>
#include <vector>

namespace tarvin {

// One machine with its summary.
struct ShownMachine {
    KnownMachine machine;
    MachineSummary summary;
};

// "LASER: sending 4711, 63 %, 12.5 lines/s, errors 0, repeats 0, since 10:20:31", without a line end. The date stands
// before the time of another day.
std::string LineOf(const ShownMachine& shown, const Present& present);

// An array with one object for each machine. docs/status.md describes it.
std::string JsonOf(const std::vector<ShownMachine>& machines, const Present& present);

// The text without control characters, and without those that turn the direction of the line.
KelText Printable(KelTextView text);

// Such as 10:20:31, or 2026-11-22 10:20:31 if that is another day than the present.
std::string SinceText(SystemTime time, const Present& present);

// Such as 12.5.
std::string RateText(double rate);

}
