#include "engine/LineList.h"

#include <algorithm>

namespace tarvin {

LineList::LoadResult LineList::Load(KelFile& file) {
    Clear();
    if (!image.Load(file))
        return LoadResult::Unreadable;
    const std::string_view content = image.Content();
    rest = content;
    LoadResult result = LoadResult::Loaded;
    std::size_t end = content.size();
    std::ptrdiff_t lineEndReturns = 0;
    while (!rest.empty()) {
        const std::size_t start = content.size() - rest.size();
        const std::size_t length = NextLine().size();
        if (length > longestLineAllowed) {
            result = LoadResult::NotText;
            end = start;
            break;
        }
        longestLine = std::max(longestLine, length);
        const std::size_t lineEnd = start + length;
        lineEndReturns += lineEnd < content.size() && content[lineEnd] == '\r' ? 1 : 0;
    }
    rest = content.substr(0, end);
    // Counting is far cheaper than searching each line.
    hasStrayCarriageReturn = std::count(rest.begin(), rest.end(), '\r') != lineEndReturns;
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
