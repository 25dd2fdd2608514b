#pragma once
// The program tarvin-history from its arguments to its exit code, without main(), so that tests can run it.

#include "base/KelText.h"

#include <iosfwd>
#include <span>

namespace tarvin {

// The exit code: 0 if the output is written, or if its reader has left; 1 for a history that cannot be read or an
// output that cannot be written; 2 for wrong usage.
int RunHistoryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors);

}
