#pragma once
// The lines of an NC file that is being downloaded, one after the other. It keeps the file as one image without an
// index, so a large file takes no more memory than its size.

#include "transfer/FileImage.h"

#include <cstddef>
#include <string_view>

namespace tarvin {

class LineList {
public:
    // In bytes without the line end. A file with a longer line is no NC text.
    static constexpr std::size_t longestLineAllowed = 24576;

    enum class LoadResult {
        Loaded,
        NotText,   // a line is longer than allowed; the lines before it have been loaded
        Unreadable // no lines; also if `stop` was set
    };

    // Reads the open file. Lines end with LF or CR LF. Bytes behind the last line end are a line too, without a CR at
    // the very end.
    LoadResult Load(KelFile& file, const std::atomic<bool>& stop);
    void Clear();

    std::size_t FileSize() const { return image.Length(); }
    // Length of the longest line, without its line end.
    std::size_t LongestLine() const { return longestLine; }
    // Whether a carriage return stands inside a line.
    bool HasStrayCarriageReturn() const { return hasStrayCarriageReturn; }

    // Takes the next line that is not empty, without its line end; empty when no line is left. Valid until Load or
    // Clear.
    std::string_view NextNonEmpty();

private:
    std::string_view NextLine();

    FileImage image;
    std::string_view rest;
    std::size_t longestLine = 0;
    bool hasStrayCarriageReturn = false;
};

}
