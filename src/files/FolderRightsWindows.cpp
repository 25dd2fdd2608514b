#include "base/WindowsApi.h"
#include "files/FolderRights.h"

namespace tarvin {

std::error_code MakeSharedFolder(const std::filesystem::path& folder) {
    std::error_code error;
    std::filesystem::create_directory(folder, error);
    std::error_code ignored;
    if (std::filesystem::is_directory(folder, ignored))
        return {};
    return error ? error : std::error_code(ERROR_DIRECTORY, std::system_category());
}

}
