#pragma once
// The lines of an NC file being downloaded, handed out one after the other. Keeps the file as one image and no index: a
// large file costs its own size and no more. Knows nothing of protocols.

#include "transfer/FileImage.h"

#include <cstddef>
#include <string_view>

namespace tarvin {

class LineList {
public:
    // A longer line is no NC text.
    static constexpr std::size_t longestLineAllowed = 24576;

    enum class LoadResult {
        Loaded,
        NotText,   // a line was longer than allowed; the lines before it are there
        Unreadable // no lines; also if `stop` was set meanwhile
    };

    // Lines end with LF or CR LF; what follows the last line end is a line too, less a CR at the very end.
    LoadResult Load(KelFile& file, const std::atomic<bool>& stop);
    void Clear();

    std::size_t FileSize() const { return image.Length(); }
    // Length of the longest line, without its line end.
    std::size_t LongestLine() const { return longestLine; }
    // A carriage return inside a line, where no line ends.
    bool HasStrayCarriageReturn() const { return hasStrayCarriageReturn; }

    // The next line that is not empty, without its line end; empty when there is none left. Valid until Load or Clear.
    std::string_view NextNonEmpty();

private:
    std::string_view NextLine();

    FileImage image;
    std::string_view rest;
    std::size_t longestLine = 0;
    bool hasStrayCarriageReturn = false;
};

}
