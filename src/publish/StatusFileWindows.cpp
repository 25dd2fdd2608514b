#include "base/PublishMessages.h"
#include "base/System.h"
#include "base/WindowsApi.h"
#include "files/NativeFile.h"
#include "publish/StatusFile.h"

#include <system_error>

namespace tarvin {

namespace {

// A reader has the file open for a moment, and an older Windows replaces no file that is open.
constexpr int mostAttempts = 10;
constexpr DWORD attemptMilliseconds = 20;

}

// The file has the rights that the folder hands down.
Result<> WriteStatusFile(const std::filesystem::path& path, std::string_view content) {
    // One program at a time writes the file of a machine, so a file with this name is a left-over of a killed one.
    std::filesystem::path fresh = path;
    fresh += L".new";
    ::DeleteFileW(fresh.c_str());
    NativeFile file;
    Result<> result = file.Open(fresh, NativeFile::Access::Create);
    if (result)
        result = file.Write(content);
    file.Close();
    for (int attempt = 1; result; ++attempt) {
        if (::MoveFileExW(fresh.c_str(), path.c_str(), MOVEFILE_REPLACE_EXISTING))
            return {};
        const DWORD error = ::GetLastError();
        const bool isBusy = error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED;
        if (!isBusy || attempt == mostAttempts)
            result = Error{SystemErrorText(error)};
        else
            ::Sleep(attemptMilliseconds);
    }
    ::DeleteFileW(fresh.c_str());
    return result;
}

// Who may put files into the folder is for its access control list to say, so the owner of a file is not asked.
Result<std::string> ReadStatusFile(const std::filesystem::path& path) {
    std::error_code ignored;
    const auto type = std::filesystem::symlink_status(path, ignored).type();
    if (type == std::filesystem::file_type::not_found)
        return Error{SystemErrorText(ERROR_FILE_NOT_FOUND), true};
    if (type != std::filesystem::file_type::regular && type != std::filesystem::file_type::unknown)
        return Error{text::fileReason::noRegularFile};
    auto content = ReadStartOfFile(path, longestStatusFile + 1);
    if (content && content->size() > longestStatusFile)
        return Error{text::publish::tooLong};
    return content;
}

}
