#pragma once
// Processes, and who runs this one: user and computer. One source for each system. Any thread.

#include "base/Result.h"

#include <cstdint>
#include <filesystem>
#include <vector>

namespace tarvin {

std::uint64_t OwnProcessId();

// Runs the program with these words in place of this one where the system can, and does not return then. Else starts it
// and returns: this program has nothing left to do. `program` is without the extension that programs have on Windows.
Result<> BecomeProgram(const std::filesystem::path& program, const std::vector<KelText>& words);

// True too if the process belongs to another user. The system gives the number of a process that has ended to a new one
// after a while.
bool IsProcessRunning(std::uint64_t process);

// A mark of the moment at which the process started, for comparisons with an earlier mark: a process that gets the same
// number later has another one, also after a restart of the computer. Empty if the system does not tell it, which it
// may keep from other users, and if there is no such process. A process that has ended and whose parent has not noticed
// has the mark "ended".
KelText ProcessStartMark(std::uint64_t process);

// The name under which the user is logged in; the user's number where it has no name.
KelText UserName();

// The name of the group to which files of the user belong, or its number. Empty where the system has no such group.
KelText GroupName();

KelText ComputerName();

}
