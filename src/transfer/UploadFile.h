#pragma once
// The file of an upload. It arrives under its name plus ".part", and takes its name in one step when it is complete and
// on the disk. Until then an older file of that name stays whole. One thread at a time.

#include "base/Sha256.h"
#include "files/KelFile.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin {

class UploadFile {
public:
    enum class Content {
        Text, // lines end with CR LF on the disk
        Bytes // stored as they come
    };
    enum class Ending {
        TookName,
        OlderStays // nothing was stored, and the older file of this name stays
    };

    UploadFile() = default;
    ~UploadFile() { GiveUp(); }
    UploadFile(const UploadFile&) = delete;
    UploadFile& operator=(const UploadFile&) = delete;

    // Makes the ".part" of the file at `path` anew. Fails if another program writes it, or if the file at `path` cannot
    // be replaced. Requires that no file is open.
    Result<> Begin(const std::filesystem::path& path, Content content);
    // Whether Begin would add a name to the folder: neither the file at `path` nor its ".part" is there.
    static bool IsNewName(const std::filesystem::path& path);
    bool IsOpen() const { return file.IsOpen(); }

    // Adds all of the bytes or, after a failure, none of them. Requires an open file.
    Result<> Store(std::string_view bytes);
    // Bytes in the file, with the CRs that Store has added. Stays known after the end.
    std::uint64_t BytesStored() const { return bytesStored; }
    // The SHA-256 of these bytes as hexadecimal digits.
    std::string Checksum() const { return checksum.Digits(); }

    // Brings the file to the disk, keeps an older one with other bytes as ReplacedFiles.h says, and gives the file its
    // name. Of the kept files the newest `replacedFilesKept` stay. Blocks for as long as the disk takes. Success closes
    // the file. After a failure the file stays open: with isBusy another attempt may succeed, otherwise give it up.
    // Requires an open file.
    Result<Ending> Complete(int replacedFilesKept);

    // Ends without the name: brings the file to the disk, as far as that succeeds, and closes it. It stays as ".part".
    // If Complete has found it whole, it gets a name of its own instead, which is the result; if Complete has given it
    // its name and could not bring that to the disk, the result is that name. Otherwise the result is empty. Does
    // nothing without an open file.
    std::filesystem::path GiveUp();

private:
    bool IsInPlace();
    Result<> KeepOlder(int replacedFilesKept);

    std::filesystem::path path;
    std::filesystem::path part;
    std::filesystem::path kept; // the older file under its second name
    NativeFile file;
    Content content = Content::Text;
    LineEnds lineEnds;
    std::uint64_t bytesStored = 0;
    Sha256 checksum;
    bool isWhole = false;
    bool hasName = false;
};

}
