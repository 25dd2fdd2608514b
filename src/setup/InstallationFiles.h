#pragma once
// The files of an installation as each system wants them. One source for each system. Blocks for the disk.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// Makes `target` lead to data that all installations share: a link, so that an upgrade of the program renews it, or a
// copy on Windows.
Result<> LinkData(const std::filesystem::path& shared, const std::filesystem::path& target);

// Gives a new installation, with all that is in it, to the user of the service if this process is root and the folder
// is the system's. Else changes nothing.
void GiveToService(const std::filesystem::path& installation);

// Gives a new file the owner of its folder if this process is root: the service must be able to read it.
void GiveToOwnerOfFolder(const std::filesystem::path& file);

// Whether this process may change the system's files.
bool MayChangeSystem();

}
