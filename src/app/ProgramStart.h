#pragma once
// What every program of the machine does with its command line before anything else. Knows nothing of what comes then.

#include "base/KelText.h"
#include "files/Installation.h"

#include <optional>

namespace tarvin {

struct ProgramStart {
    KelText commandLine;
    Installation paths;
};

// From what main() is given. None if the program has nothing more to do and ends with 0: it has been asked for its
// usage or its version, which are printed, or there is no installation, which is said on standard error.
std::optional<ProgramStart> BeginProgram(int argumentCount, const char* const* arguments, const char* programName,
                                         const char* usage);

}
