#include "transfer/ProgramComment.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr int mostLines = 60;
constexpr std::size_t mostCharacters = 80;
// A file without line ends is not searched to its end.
constexpr std::size_t mostBytes = 8192;

// The comment of one line with its parentheses, or the text behind a semicolon.
std::string_view CommentIn(std::string_view line) {
    const std::size_t start = line.find_first_of("(;");
    if (start == std::string_view::npos)
        return {};
    if (line[start] == ';')
        return line.substr(start + 1);
    const std::size_t end = line.find(')', start);
    return line.substr(start, end == std::string_view::npos ? end : end - start + 1);
}

KelText Decoded(std::string_view bytes) {
    KelText text = FromUtf8(bytes);
    // A byte that is no UTF-8 has become a low surrogate without its first half.
    for (std::size_t unit = 0; unit < text.size(); ++unit) {
        if (IsLowSurrogate(text[unit]) && (unit == 0 || !IsHighSurrogate(text[unit - 1])))
            return FromBytes(bytes);
    }
    return text;
}

bool IsControl(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit < 0xA0);
}

}

KelText FirstComment(std::string_view text) {
    text = text.substr(0, mostBytes);
    for (int line = 0; line < mostLines && !text.empty(); ++line) {
        const std::size_t lineEnd = text.find('\n');
        KelText found = Decoded(CommentIn(text.substr(0, lineEnd)));
        found.erase(std::remove_if(found.begin(), found.end(), IsControl), found.end());
        found = Trimmed(found);
        if (!found.empty() && found != u"()") {
            if (found.size() > mostCharacters)
                found.resize(mostCharacters - (IsHighSurrogate(found[mostCharacters - 1]) ? 1 : 0));
            return found;
        }
        text.remove_prefix(lineEnd == std::string_view::npos ? text.size() : lineEnd + 1);
    }
    return {};
}

}
