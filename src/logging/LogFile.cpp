#include "logging/LogFile.h"

#include <fstream>
#include <system_error>

namespace tarvin {

Result<> AppendLines(KelFile& file, const std::filesystem::path& path, std::string_view lines) {
    const auto sizeBefore = file.Size();
    const std::uint64_t writtenBefore = file.BytesWritten();
    Result<> written = file.Write(lines);
    const std::uint64_t tornBytes = file.BytesWritten() - writtenBefore;
    if (written || tornBytes == 0 || !sizeBefore)
        return written;
    const auto size = file.Size();
    std::error_code ignored;
    if (size && *size == *sizeBefore + tornBytes && file.IsAt(path))
        std::filesystem::resize_file(path, *sizeBefore, ignored);
    return written;
}

bool EndsWithinLine(const std::filesystem::path& path) {
    std::error_code error;
    const auto size = std::filesystem::file_size(path, error);
    if (error || size == 0)
        return false;
    std::ifstream file(path, std::ios::binary);
    file.seekg(-1, std::ios::end);
    return file.get() != '\n' && file.good();
}

}
