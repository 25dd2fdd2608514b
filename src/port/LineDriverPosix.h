#pragma once
// The driver behind an open serial device, as far as the system tells about it.

#include "base/KelText.h"

#include <cstdint>
#include <optional>

namespace tarvin {

enum class LineDriver {
    // Its far end is a program. It takes every mode and has none, and stops at an XOFF.
    PseudoTerminal,
    // Runs its chip through the kernel's serial core, which stops the output at an XOFF.
    SerialCore,
    // Any other one, such as those of USB adapters. Many of them take software flow control and send on after an XOFF.
    Other
};

// Requires an open device.
LineDriver DriverOf(int device);

// Whether the driver takes 5 data bits and sends 8, without telling.
bool SendsFiveBitsAsEight(int device);

// Makes the driver hand over received bytes at once. Returns what the user should know if only the rights are missing.
std::optional<KelText> SpeedUpReceiving(int device);

}
