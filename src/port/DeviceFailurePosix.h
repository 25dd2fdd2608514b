#pragma once
// What a failed call on a device means, in the form of the port.

#include "base/Result.h"

#include <filesystem>

namespace tarvin {

// `error` is the number of the system. The device is gone if no call on it can succeed any more.
Error DeviceFailure(int error);

// The same for an opening of `path`. Where a right is missing, it names the group that has it.
Error OpenFailure(int error, const std::filesystem::path& path);

}
