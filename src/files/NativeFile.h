#pragma once
// A regular file of the operating system, without a buffer of the program's own. One thread at a time. No operation
// throws. On a closed file every operation but Open and Close fails.

#include "base/Result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin {

class NativeFile {
public:
    enum class Access {
        Read,
        ReadNoLink, // as Read, but refuses a link on POSIX
        Replace,
        Append,
        Create,      // makes a new file, and refuses a name that exists, also as a link that leads nowhere
        CreateForOne // as Create, for reading and writing, and for one program: locked on POSIX, not shared on Windows
    };
    // Whether another program, or another part of this one, has the file open for writing.
    enum class Writers { None, Some, Unknown };

    // A file whose content is changed gets another stamp.
    struct Stamp {
        std::uint64_t byteCount = 0;
        std::chrono::system_clock::time_point written; // when the content was last changed
        bool operator==(const Stamp&) const = default;
    };

    NativeFile() = default;
    ~NativeFile() { Close(); }
    NativeFile(const NativeFile&) = delete;
    NativeFile& operator=(const NativeFile&) = delete;

    // Closes the present file and opens a regular one. Refuses a folder, a device and a pipe, and never waits for them.
    // Replace and Append create a file that is missing. After a failure the object is closed.
    Result<> Open(const std::filesystem::path& path, Access access);
    bool IsOpen() const { return handle != closedHandle; }

    // Reads up to `byteCount` bytes and gives their number: 0 at the end of the file.
    Result<std::size_t> Read(void* bytes, std::size_t byteCount);
    // Hands all of `bytes` to the operating system. After a failure it may have taken some of them; BytesWritten counts
    // these.
    Result<> Write(std::string_view bytes);
    // Bytes that the operating system has taken since the last Open. Stays known after Close.
    std::uint64_t BytesWritten() const { return bytesWritten; }
    // Cuts the file to `byteCount` bytes and goes on writing there. BytesWritten stays.
    Result<> Truncate(std::uint64_t byteCount);
    // The next Read begins at the start of the file.
    Result<> Rewind();
    // The size of the file in bytes.
    Result<std::uint64_t> Size();
    Result<Stamp> Stamped();
    // Requires a file opened with Read or ReadNoLink. Unknown on network drives, and where the system keeps the answer
    // to the owner of the file.
    Writers OtherWriters();
    // Blocks until the content is on the disk.
    Result<> Sync();
    // Takes the lock on the file and holds it until the file is closed. Does not block: fails with isBusy if another
    // open file holds the lock, and without it if the file system has no locks. Reading and writing need no lock.
    Result<> Lock();
    // Gives the file the owner, group and permissions of the file at `model`, as far as the system permits. Permissions
    // of a group that cannot be kept are reduced to those of everyone. Requires a file opened with Create or
    // CreateForOne.
    void CopyRights(const std::filesystem::path& model);
    // Gives the file the group of `folder` and its permissions, as far as the system permits, whatever the umask is.
    // Others get no right to write. On Windows every new file inherits from its folder, and this adds nothing. Requires
    // a file opened with Create or CreateForOne.
    void TakeFolderRights(const std::filesystem::path& folder);
    // Gives the file, which is at `path`, the name `target` in one step, in place of a file or link with that name.
    // Blocks until the step is on the disk. Requires a file opened with CreateForOne. isBusy if another program holds
    // the file at `target`.
    Result<> MoveTo(const std::filesystem::path& path, const std::filesystem::path& target);
    // Deletes the file, which is at `path`, and closes it. Requires a file opened with CreateForOne.
    void Delete(const std::filesystem::path& path);
    // True if the path still leads to this file: it may have been deleted, moved or replaced.
    bool IsAt(const std::filesystem::path& path);
    void Close();

private:
    static constexpr std::intptr_t closedHandle = -1;
    std::intptr_t handle = closedHandle;
    std::uint64_t bytesWritten = 0;
};

// The whole content of a file. Fails if the file cannot be read or holds more than `maximum` bytes.
Result<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maximum);

// The content of a file, or its first `byteCount` bytes if it is longer. Fails if the file cannot be read, and for root
// if it is a link in a folder of another user.
Result<std::string> ReadStartOfFile(const std::filesystem::path& path, std::size_t byteCount);

// Whether both files have the same bytes. Reads both from the start. False if one of them cannot be read.
bool HaveSameBytes(NativeFile& left, NativeFile& right);

// Writes what is left to read of `source` to `copy`. Fails if one of them does; a part may then be in `copy`.
Result<> CopyContent(NativeFile& source, NativeFile& copy);

// Replaces a file in one step: at every moment, also after a crash, the path leads to the whole old content or the
// whole new one. Keeps owner, group and permissions of an existing file as far as permitted. A link stays a link: the
// file that it leads to is replaced; root refuses a link in a folder of another user. Refuses to replace anything but a
// regular file. Removes new files that a killed
// program has left behind. Blocks until the new content is on the disk. A failure leaves the old file as it was, unless
// the step itself could not be brought to the disk: then the new content is in place.
Result<> ReplaceWholeFile(const std::filesystem::path& path, std::string_view content);

}
