#pragma once
// A regular file of the operating system, unbuffered: what KelFile and the settings store stand on. Knows nothing of
// text. One thread at a time. No operation throws; a failed one leaves its reason in LastError.

#include "base/KelText.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

class NativeFile {
public:
    enum class Access { Read, Replace, Append };

    NativeFile() = default;
    ~NativeFile() { Close(); }
    NativeFile(const NativeFile&) = delete;
    NativeFile& operator=(const NativeFile&) = delete;

    // Opens a regular file; anything else (a folder, a device, a pipe) is refused, and never waited for.
    bool Open(const std::filesystem::path& path, Access access);
    bool IsOpen() const { return handle != closedHandle; }

    // Up to `byteCount` bytes; 0 at the end of the file, none on an error.
    std::optional<std::size_t> Read(void* bytes, std::size_t byteCount);
    // All of `bytes` handed to the operating system, or false with `written` telling how many were.
    bool Write(std::string_view bytes, std::size_t& written);
    std::optional<std::uint64_t> Size();
    // Blocks until the content is on the disk.
    bool Sync();
    // Keeps others who ask for the same from getting it, until the file is closed. At once; false if somebody has it.
    bool Lock();
    // Whether the path still leads to this file: it may have been deleted, moved or replaced.
    bool IsAt(const std::filesystem::path& path);
    void Close();

    // The system's words for the last failure.
    const KelText& LastError() const { return lastError; }

private:
    bool Fail(int systemError);

    static constexpr std::intptr_t closedHandle = -1;
    std::intptr_t handle = closedHandle;
    KelText lastError;
};

// The whole content of a file of at most `maximum` bytes; none if it cannot be read or is longer.
std::optional<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maximum);

// Replaces the file in one step: whoever looks, before or after a crash, finds the old content or the new one, whole.
// The permissions of an existing file are kept, and what is no regular file is not replaced. False leaves the old file
// as it was.
bool ReplaceWholeFile(const std::filesystem::path& path, std::string_view content);

}
