#pragma once
// What a command of the programs without a window has said: its exit code and its two streams.

#include "base/KelText.h"

#include <sstream>
#include <string>
#include <vector>

namespace tarvin::test {

struct CommandResult {
    int exitCode = 0;
    std::string output;
    std::string errors;
};

// `command` takes the arguments and the streams for output and errors, and returns the exit code.
template <typename Command>
CommandResult RunCommand(Command command, const std::vector<KelText>& arguments) {
    std::ostringstream output;
    std::ostringstream errors;
    const int exitCode = command(arguments, output, errors);
    return {exitCode, output.str(), errors.str()};
}

}
