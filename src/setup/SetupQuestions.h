#pragma once
// Asks a person on a terminal for what the command line has left open.

#include "setup/SetupOptions.h"

#include <iosfwd>

namespace tarvin {

// Asks for what a new machine needs and `request` lacks, and adds the answers. An empty line, and the end of `input`,
// mean the answer that stands in brackets. `pathsFile` is the installation's KEL.INI. Opens and closes every port.
void AskForMachine(SetupRequest& request, const std::filesystem::path& pathsFile, const KelText& folder,
                   std::istream& input, std::ostream& output);

// The machine's name.
KelText AskForName(std::istream& input, std::ostream& output);

// The ports of the computer as lines for a console, each with its line end: name, device, maker, product, serial
// number and state. With the advice for each port that cannot be used.
KelText ListOfPorts(const std::filesystem::path& pathsFile);

}
