#include "files/NativeFile.h"

#include "files/Links.h"

#include <algorithm>
#include <vector>

namespace tarvin {

Result<std::string> ReadStartOfFile(const std::filesystem::path& path, std::size_t byteCount) {
    if (const auto checked = CheckLink(path); !checked)
        return checked.Reason();
    NativeFile file;
    const bool followsLinks = AreLinksFollowedIn(path.parent_path());
    const auto access = followsLinks ? NativeFile::Access::Read : NativeFile::Access::ReadNoLink;
    if (const auto opened = file.Open(path, access); !opened)
        return opened.Reason();
    // The file may grow while it is read, so its size is not asked for.
    std::string content;
    char chunk[16384];
    while (content.size() < byteCount) {
        const auto count = file.Read(chunk, std::min(sizeof chunk, byteCount - content.size()));
        if (!count)
            return count.Reason();
        if (*count == 0)
            break;
        content.append(chunk, *count);
    }
    return content;
}

Result<std::string> ReadWholeFile(const std::filesystem::path& path, std::size_t maximum) {
    auto content = ReadStartOfFile(path, maximum + 1);
    if (content && content->size() > maximum)
        return Error{u"The file is larger than " + ToText(static_cast<std::int64_t>(maximum)) + u" bytes"};
    return content;
}

bool HaveSameBytes(NativeFile& left, NativeFile& right) {
    const auto leftSize = left.Size();
    const auto rightSize = right.Size();
    if (!leftSize || !rightSize || *leftSize != *rightSize || !left.Rewind() || !right.Rewind())
        return false;
    constexpr std::size_t pieceSize = 1 << 16;
    std::vector<char> leftBytes(pieceSize);
    std::vector<char> rightBytes(pieceSize);
    for (;;) {
        // A read of a regular file gives less than asked for at its end alone.
        const auto leftCount = left.Read(leftBytes.data(), pieceSize);
        const auto rightCount = right.Read(rightBytes.data(), pieceSize);
        if (!leftCount || !rightCount || *leftCount != *rightCount ||
            !std::equal(leftBytes.begin(), leftBytes.begin() + static_cast<std::ptrdiff_t>(*leftCount),
                        rightBytes.begin()))
            return false;
        if (*leftCount == 0)
            return true;
    }
}

Result<> CopyContent(NativeFile& source, NativeFile& copy) {
    std::vector<char> piece(std::size_t{1} << 16);
    for (;;) {
        const auto count = source.Read(piece.data(), piece.size());
        if (!count)
            return count.Reason();
        if (*count == 0)
            return {};
        if (const auto written = copy.Write({piece.data(), *count}); !written)
            return written;
    }
}

}
