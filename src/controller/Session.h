#pragma once
// A run of the controller from its command line to its exit status. Both operations block until the run is over. One
// run at a time in a process, because of its pseudo-terminal.

#include "controller/CommandLine.h"

#include <iosfwd>

namespace tarvin::controller {

// Exit codes of the program. Stopped: all was right and --stop-after ended a transfer.
namespace ExitStatus {
inline constexpr int right = 0;
inline constexpr int failed = 1;
inline constexpr int usage = 2;
inline constexpr int stopped = 3;
}

// `arguments` follow the program's name.
int RunController(std::span<const std::string> arguments, std::string_view version, std::ostream& output,
                  std::ostream& errors);

// Runs the commands of `options` on an open line. `files` holds the lines of each command's file, empty if it reads
// none. Requires at least one command, and one entry of `files` for each.
int RunCommands(const ControllerOptions& options, std::span<const std::vector<std::string>> files, ControllerLine& line,
                const Clock& clock, std::ostream& output);

}
