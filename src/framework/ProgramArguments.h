#pragma once
// The words of the command line, whatever characters they hold.

#include "framework/KelText.h"

#include <vector>

namespace tarvin {

// Those behind the program's name, from what main() is given.
std::vector<KelText> ProgramArguments(int argumentCount, const char* const* arguments);

}
