#pragma once
// A lock for the short time in which a program reads a file, changes it and replaces it. Any thread.

#include "files/NativeFile.h"

#include <chrono>
#include <filesystem>

namespace tarvin {

// Opens the file and locks it against other programs that call this. Waits for them, `longestWait` at most. False, with
// `file` closed, if they hold it longer, or if the file cannot be opened. Closing `file` ends the lock.
//
// While it is locked, the file may be replaced: a program that waited for the old file then waits for the new one.
bool HoldFile(NativeFile& file, const std::filesystem::path& path, std::chrono::milliseconds longestWait);

}
