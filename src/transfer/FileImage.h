#pragma once
// The content of a file that is being downloaded, as it was when it was read: another program may rewrite the file
// during the download.

#include "base/Sha256.h"
#include "files/NativeFile.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string>
#include <string_view>

namespace tarvin {

class FileImage {
public:
    // In bytes. Transfer counters and status texts end at 2^31 - 1.
    static constexpr std::size_t maximumLength = 0x7FFFFFFF;

    // Reads the open file to its end. Fails, with an empty image, if it cannot be read, is too long, does not fit in
    // memory, or if another thread sets `stop`: a program that ends does not wait for gigabytes.
    Result<> Load(NativeFile& file, const std::atomic<bool>& stop);

    // The same in pieces, for a reader that may stop before the end. Begin makes room for the file and clears the
    // image. Then each ReadPiece adds up to `byteCount` bytes and gives their number, 0 at the end of the file. After a
    // failure the image is to be cleared.
    Result<> Begin(NativeFile& file);
    Result<std::size_t> ReadPiece(NativeFile& file, std::size_t byteCount);

    void Clear();

    std::size_t Length() const { return length; }
    std::size_t Position() const { return position; }
    // The line feeds before the position.
    std::int64_t LinesTaken() const { return linesTaken; }
    std::string_view Content() const { return {content.get(), length}; }

    // Takes the next bytes, at most `byteCount` and with `upToLineEnd` none behind the next line feed; none at the end.
    // Valid until Load or Clear.
    std::span<const std::uint8_t> Next(std::size_t byteCount, bool upToLineEnd);

    // Adds the bytes before `end` to the checksum, at most `most` of those that it lacks. True if it lacks none now.
    bool Sum(std::size_t end, std::size_t most);
    // The SHA-256 of the bytes that were added, as hexadecimal digits.
    std::string Checksum() const { return sum.Digits(); }

private:
    Result<> Grow(std::size_t newCapacity);

    std::unique_ptr<char[]> content;
    std::size_t capacity = 0;
    std::size_t length = 0;
    std::size_t position = 0;
    std::int64_t linesTaken = 0;
    Sha256 sum;
    std::size_t summed = 0; // bytes
};

}
