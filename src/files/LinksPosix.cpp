#include "base/System.h"
#include "files/Links.h"

#include <system_error>

namespace tarvin {

bool IsLink(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::is_symlink(std::filesystem::symlink_status(path, ignored));
}

Result<std::filesystem::path> RealPath(const std::filesystem::path& path) {
    std::error_code error;
    std::filesystem::path real = std::filesystem::canonical(path, error);
    if (error)
        return Error{SystemErrorText(static_cast<unsigned long>(error.value()))};
    return real;
}

}
