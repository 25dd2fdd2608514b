#pragma once
// The file of a download on the disk: found, opened, and watched for other programs that write it. One thread at a
// time.

#include "files/NativeFile.h"

#include <chrono>
#include <filesystem>
#include <span>

namespace tarvin {

class SourceFile {
public:
    // A second look comes this long after the first one.
    static constexpr std::chrono::milliseconds secondLookAfter{250};

    // Opens the file at `path`, or without one of this exact name the one whose name differs in case alone. Follows a
    // link only to a file below the folder of `path` or below one of `linkedFolders`. Refuses a file that another
    // program is writing. The reason is empty if there is no such file.
    Result<> Open(const std::filesystem::path& path, std::span<const std::filesystem::path> linkedFolders);
    // Opens a file that a user has picked, wherever it is. Refuses as Open does.
    Result<> OpenPicked(const std::filesystem::path& path);
    void Close() { file.Close(); }

    // Requires an open file, as all below.
    NativeFile& File() { return file; }
    // Fails if the file is no longer the one that was opened, or if its content has changed since.
    Result<> CheckUnchanged() const;
    // Whether the content may be half of what another program writes: the system cannot tell, and the file was changed
    // moments ago. Then CheckUnchanged has to succeed once more, secondLookAfter later.
    bool NeedsSecondLook() const { return needsSecondLook; }

private:
    Result<> OpenFound();

    std::filesystem::path found;
    NativeFile file;
    NativeFile::Stamp stamp; // when it was opened
    bool needsSecondLook = false;
};

}
