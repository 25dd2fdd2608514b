#pragma once
// The lines of an NC file that is being downloaded, one after the other. It keeps the file as one image without an
// index, so a large file takes no more memory than its size.

#include "transfer/FileImage.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace tarvin {

class LineList {
public:
    // In bytes without the line end. A file with a longer line is no NC text, whatever the controller takes.
    static constexpr std::size_t longestLineOfText = 24576;

    // Why the controller must not get the file.
    struct Fault {
        enum class Kind { LongLine, StrayReturn, Utf16 };
        Kind kind = Kind::LongLine;
        std::int64_t lineNumber = 1;   // from 1
        bool isLongerThanText = false; // the line has more than longestLineOfText bytes
    };

    // Reads the open file, up to its first fault. A line ends with an LF and the CRs beside it. Bytes behind the last
    // line end are a line too, without CRs at the very end. A UTF-8 byte order mark at the start and 1Ah at the end
    // belong to no line. A line of more than `longestLineAllowed` bytes and a CR within a line are faults. Fails if the
    // file cannot be read, or if `stop` is set. Without success the list is empty.
    Result<std::optional<Fault>> Load(NativeFile& file, const std::atomic<bool>& stop, std::size_t longestLineAllowed);
    void Clear();

    std::size_t FileSize() const { return image.Length(); }

    // The lines of the file, empty ones included, as an editor counts them, and those up to the last line taken.
    std::int64_t LinesTotal() const { return linesTotal; }
    std::int64_t LinesTaken() const { return linesTaken; }
    // The bytes of the file up to the end of the last line taken, with line ends as the file has them.
    std::size_t BytesTaken() const { return bytesTaken; }
    // The text of the file from its first line on, without a byte order mark.
    std::string_view Text() const { return rest; }

    // Takes the next line that is not empty, without its line end; empty when no line is left. Valid until Load or
    // Clear.
    std::string_view NextNonEmpty();

    // As those of the image.
    bool Sum(std::size_t end, std::size_t most) { return image.Sum(end, most); }
    std::string Checksum() const { return image.Checksum(); }

private:
    FileImage image;
    std::string_view rest;
    std::int64_t linesTotal = 0;
    std::int64_t linesTaken = 0;
    std::size_t bytesTaken = 0;
};

}
