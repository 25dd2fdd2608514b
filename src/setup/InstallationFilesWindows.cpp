#include "setup/InstallationFiles.h"

#include <system_error>

namespace tarvin {

Result<> LinkData(const std::filesystem::path& shared, const std::filesystem::path& target) {
    std::error_code error;
    std::filesystem::copy_file(shared, target, error);
    return error ? Result<>(Error{FromUtf8(error.message())}) : Result<>();
}

// Rights come from the folder above.
void GiveToService(const std::filesystem::path& /*installation*/) {}

void GiveToOwnerOfFolder(const std::filesystem::path& /*file*/) {}

// Whether the user is an administrator shows when the first file is written.
bool MayChangeSystem() {
    return true;
}

}
