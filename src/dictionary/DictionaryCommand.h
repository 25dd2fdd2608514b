#pragma once
// The program tarvin-dictionary from its arguments to its exit code, without main(), so that tests can run it.

#include "base/KelText.h"

#include <iosfwd>
#include <span>

namespace tarvin::dictionary {

// The exit code: 0 if the output is written, 1 for a wrong input or an output that cannot be written, 2 for wrong
// usage.
int RunDictionaryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors);

}
