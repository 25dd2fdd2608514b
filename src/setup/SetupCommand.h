#pragma once
// The program tarvindl-setup from its arguments to its exit code, without main(), so that tests can run it.

#include "base/KelText.h"

#include <iosfwd>
#include <span>

namespace tarvin {

struct SetupConsole {
    std::istream& input;
    std::ostream& output;
    std::ostream& errors;
    // Someone sits there and can be asked.
    bool isTerminal;
};

// The exit code: 0 if all was done or was so already; 1 if something could not be done; 2 for wrong usage.
int RunSetupCommand(std::span<const KelText> words, const SetupConsole& console);

}
