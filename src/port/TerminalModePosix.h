#pragma once
// The mode of a line in the form of the kernel's terminal settings.

#include "base/Clock.h"
#include "base/Result.h"
#include "port/PortMode.h"

#include <asm/termbits.h>

namespace tarvin {

// Replaces the mode in `state` and leaves the rest. The kernel has no 1.5 stop bits; the mode must not ask for them.
void PutMode(const PortMode& mode, termios2& state);

// Fails if the device, whose settings were read back as `granted`, runs in another mode than `asked`. The reason names
// the mode that the device offers. A speed that is off by up to 2 % is right: a receiver takes it.
Result<> CheckGrantedMode(const termios2& asked, const termios2& granted);

// How long a character is on the line, with its start, parity and stop bits.
Clock::Duration CharacterTime(const termios2& state);

}
