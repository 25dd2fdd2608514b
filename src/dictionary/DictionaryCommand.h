#pragma once
// tarvin-dictionary, from its arguments to its exit code. One thread.

#include "base/KelText.h"

#include <iosfwd>
#include <span>

namespace tarvin::dictionary {

// 0: done; 1: bad input, or an output that cannot be written; 2: wrong usage.
int RunDictionaryCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors);

}
