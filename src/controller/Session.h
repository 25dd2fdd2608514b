#pragma once
// A run of the controller from its command line to its exit status. Blocks until all is done. One at a time in a
// process while pseudo-terminals are used.

#include "controller/CommandLine.h"

#include <iosfwd>

namespace tarvin::controller {

namespace ExitStatus {
inline constexpr int right = 0;
inline constexpr int failed = 1;
inline constexpr int usage = 2;
inline constexpr int stopped = 3;
}

// The arguments behind the program's name.
int RunController(std::span<const std::string> arguments, std::string_view version, std::ostream& output,
                  std::ostream& errors);

// The part behind command line, files and opening: `files` holds the lines for each command, empty for those that read
// none. There is at least one command.
int RunCommands(const ControllerOptions& options, std::span<const std::vector<std::string>> files, ControllerLine& line,
                const Clock& clock, std::ostream& output);

}
