#pragma once
// Asks a person on a terminal for what the command line has left open.

#include "setup/SetupOptions.h"

#include <iosfwd>

namespace tarvin {

// Asks for what a new machine needs and `request` lacks, and adds the answers. An empty line means the answer that
// stands in brackets. An answer that cannot be used is asked for again at once. Fails at the end of `input`. The
// installation may be a planned one. Opens and closes every port.
Result<> AskForMachine(SetupRequest& request, const Installation& installation, std::istream& input,
                       std::ostream& output);

// The machine's name. Asks again and fails likewise.
Result<KelText> AskForName(std::istream& input, std::ostream& output);

// The ports of the computer as lines for a console, each with its line end: name, device, maker, product, serial
// number and state. With the advice for each port that cannot be used.
KelText ListOfPorts(const std::filesystem::path& pathsFile);

}
