#pragma once
// The folders in which running programs publish their status. One source for each system. Any thread, as long as no
// other thread changes the environment.

#include "base/Result.h"

#include <filesystem>
#include <vector>

namespace tarvin {

// The folder in which this process publishes: TARVINDL_RUNTIME if the environment names one, else the system's if this
// process may write it, else the user's. Makes it if it is missing and its parent is there; the system's folder belongs
// to the installation of the service and is never made. Fails if there is no such folder.
Result<std::filesystem::path> RuntimeFolderToWrite();

// Every folder in which programs of this computer may publish for this user. Each need not exist.
std::vector<std::filesystem::path> RuntimeFoldersToRead();

}
