#pragma once
// The live table of tarvindl-status, as plain lines of limited width. Any thread.

#include "publish/StatusOutput.h"

#include <string>
#include <vector>

namespace tarvin {

struct TableLine {
    std::string text; // UTF-8, at most as many characters as the room has columns
    int exitCode = allWell;
};

// In characters.
struct TableRoom {
    int columns = 80;
    int rows = 24;
};

// Column captions, one line for each machine, and what the keys do. Machines that find no room are counted in one line.
std::vector<TableLine> TableOf(const std::vector<ShownMachine>& machines, const Present& present,
                               const TableRoom& room);

}
