#include "transfer/LineList.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace tarvin {

namespace {

// Counts in blocks whose result fits a byte: the compiler then counts sixteen bytes at a time.
std::size_t CountReturns(std::string_view text) {
    constexpr std::size_t blockSize = 240;
    std::size_t total = 0;
    for (std::size_t start = 0; start < text.size(); start += blockSize) {
        std::uint8_t count = 0;
        for (const char byte : text.substr(start, blockSize))
            count = static_cast<std::uint8_t>(count + (byte == '\r' ? 1 : 0));
        total += count;
    }
    return total;
}

}

LineList::LoadResult LineList::Load(KelFile& file, const std::atomic<bool>& stop) {
    Clear();
    if (!image.Load(file, stop))
        return LoadResult::Unreadable;
    const std::string_view content = image.Content();
    const char* const end = content.data() + content.size();
    const char* start = content.data();
    std::size_t lineEndReturns = 0;
    LoadResult result = LoadResult::Loaded;
    // The controller waits for its answer meanwhile, and a file may have millions of lines.
    while (start < end && !stop.load(std::memory_order_relaxed)) {
        const void* const found = std::memchr(start, '\n', static_cast<std::size_t>(end - start));
        const char* const lineEnd = found != nullptr ? static_cast<const char*>(found) : end;
        const std::size_t returns = lineEnd > start && lineEnd[-1] == '\r' ? 1 : 0;
        const std::size_t length = static_cast<std::size_t>(lineEnd - start) - returns;
        if (length > longestLineAllowed) {
            result = LoadResult::NotText;
            break;
        }
        longestLine = std::max(longestLine, length);
        lineEndReturns += returns;
        start = std::min(lineEnd + 1, end);
    }
    rest = content.substr(0, static_cast<std::size_t>(start - content.data()));
    hasStrayCarriageReturn = CountReturns(rest) != lineEndReturns;
    return result;
}

void LineList::Clear() {
    image.Clear();
    rest = {};
    longestLine = 0;
    hasStrayCarriageReturn = false;
}

std::string_view LineList::NextLine() {
    const std::size_t found = rest.find('\n');
    std::string_view line = rest.substr(0, found);
    rest.remove_prefix(found == std::string_view::npos ? rest.size() : found + 1);
    if (line.ends_with('\r'))
        line.remove_suffix(1);
    return line;
}

std::string_view LineList::NextNonEmpty() {
    while (!rest.empty()) {
        const std::string_view line = NextLine();
        if (!line.empty())
            return line;
    }
    return {};
}

}
