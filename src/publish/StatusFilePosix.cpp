#include "base/DescriptorPosix.h"
#include "base/PublishMessages.h"
#include "base/System.h"
#include "publish/StatusFile.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

namespace {

Result<> WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = ::write(descriptor, content.data(), content.size());
        if (count < 0 && errno != EINTR)
            return LastSystemError();
        content.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
    }
    return {};
}

// Rights before content: the umask of this process may be stricter or wider.
Result<> FillFresh(const std::filesystem::path& fresh, const std::filesystem::path& folder, std::string_view content) {
    const Descriptor file(::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
    if (file.Number() < 0)
        return LastSystemError();
    struct stat around = {};
    struct stat own = {};
    if (::stat(folder.c_str(), &around) == 0 && ::fstat(file.Number(), &own) == 0 && around.st_gid != own.st_gid)
        (void)!::fchown(file.Number(), static_cast<uid_t>(-1), around.st_gid);
    if (::fchmod(file.Number(), 0640) != 0)
        return LastSystemError();
    return WriteAll(file.Number(), content);
}

}

Result<> WriteStatusFile(const std::filesystem::path& path, std::string_view content) {
    // One program at a time writes the file of a machine, so a file with this name is a left-over of a killed one.
    std::filesystem::path fresh = path;
    fresh += ".new";
    if (::unlink(fresh.c_str()) != 0 && errno != ENOENT)
        return LastSystemError();
    Result<> result = FillFresh(fresh, path.parent_path(), content);
    if (result && ::rename(fresh.c_str(), path.c_str()) != 0)
        result = LastSystemError();
    if (!result)
        ::unlink(fresh.c_str());
    return result;
}

Result<std::string> ReadStatusFile(const std::filesystem::path& path) {
    // O_NONBLOCK: the opening of a pipe would wait for its other end.
    const Descriptor file(::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    if (file.Number() < 0) {
        const bool isGone = errno == ENOENT;
        return Error{LastSystemError().text, isGone};
    }
    struct stat own = {};
    struct stat folder = {};
    if (::fstat(file.Number(), &own) != 0 || ::stat(path.parent_path().c_str(), &folder) != 0)
        return LastSystemError();
    if (!S_ISREG(own.st_mode))
        return Error{text::fileReason::noRegularFile};
    if (own.st_uid != folder.st_uid && own.st_uid != ::geteuid() && own.st_uid != 0)
        return Error{text::publish::otherOwner};
    // One byte more tells a longer file, also one that grows meanwhile.
    std::string content(longestStatusFile + 1, '\0');
    std::size_t length = 0;
    while (length < content.size()) {
        const ssize_t count = ::read(file.Number(), content.data() + length, content.size() - length);
        if (count == 0)
            break;
        if (count < 0 && errno != EINTR)
            return LastSystemError();
        length += count < 0 ? 0 : static_cast<std::size_t>(count);
    }
    if (length > longestStatusFile)
        return Error{text::publish::tooLong};
    content.resize(length);
    return content;
}

}
