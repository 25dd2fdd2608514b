#include "files/NativeFile.h"

namespace tarvin {

std::optional<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maximum) {
    NativeFile file;
    if (!file.Open(path, NativeFile::Access::Read))
        return std::nullopt;
    std::string content;
    char chunk[16384];
    for (;;) {
        const auto count = file.Read(chunk, sizeof chunk);
        if (!count || content.size() + *count > maximum)
            return std::nullopt;
        if (*count == 0)
            return content;
        content.append(chunk, *count);
    }
}

}
