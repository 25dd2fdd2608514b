#include "ui/TextSearch.h"

#include <algorithm>

namespace tarvin {

namespace {

// ASCII and Latin-1. The system's own conversion depends on a locale, which may be the "C" one.
char32_t LowerCase(char32_t character) {
    constexpr char32_t distance = U'a' - U'A';
    const bool isAscii = character >= U'A' && character <= U'Z';
    const bool isLatin = character >= 0xC0 && character <= 0xDE && character != 0xD7;
    return isAscii || isLatin ? character + distance : character;
}

bool IsSame(char32_t character, char32_t lowerCase) {
    return LowerCase(character) == lowerCase;
}

}

TextSearch::TextSearch(KelTextView wanted) : wanted(ToCharacters(wanted)) {
    std::transform(this->wanted.begin(), this->wanted.end(), this->wanted.begin(), LowerCase);
}

std::size_t TextSearch::FindIn(std::u32string_view text, std::size_t from) const {
    if (wanted.empty() || from >= text.size())
        return notFound;
    const auto found =
        std::search(text.begin() + static_cast<std::ptrdiff_t>(from), text.end(), wanted.begin(), wanted.end(), IsSame);
    return found == text.end() ? notFound : static_cast<std::size_t>(found - text.begin());
}

std::size_t TextSearch::FindLastIn(std::u32string_view text, std::size_t before) const {
    if (wanted.empty() || before == 0)
        return notFound;
    // A place that begins in front of `before` may end behind it.
    text = text.substr(0, std::min(text.size(), before - 1 + wanted.size()));
    const auto found = std::find_end(text.begin(), text.end(), wanted.begin(), wanted.end(), IsSame);
    return found == text.end() ? notFound : static_cast<std::size_t>(found - text.begin());
}

TextSearch::Place TextSearch::PlaceAt(std::uint64_t line, std::size_t column, bool hasWrapped) const {
    return {{line, column}, {line, column + wanted.size()}, hasWrapped};
}

// The line of `from` is looked at twice: behind `from` at first, and the whole of it at the end of the way round.
std::optional<TextSearch::Place> TextSearch::Next(const TextLines& lines, TextLines::Position from) const {
    if (lines.Count() == 0)
        return std::nullopt;
    from = lines.Clamped(from);
    std::uint64_t number = from.line;
    std::size_t column = from.column;
    bool hasWrapped = false;
    for (std::size_t looks = 0; looks <= lines.Count(); ++looks) {
        if (number == lines.End()) {
            number = lines.First();
            hasWrapped = true;
        }
        const std::size_t found = FindIn(lines.At(number).text, column);
        if (found != notFound)
            return PlaceAt(number, found, hasWrapped);
        ++number;
        column = 0;
    }
    return std::nullopt;
}

std::optional<TextSearch::Place> TextSearch::Previous(const TextLines& lines, TextLines::Position from) const {
    if (lines.Count() == 0)
        return std::nullopt;
    from = lines.Clamped(from);
    std::uint64_t number = from.line;
    std::size_t before = from.column;
    bool hasWrapped = false;
    for (std::size_t looks = 0; looks <= lines.Count(); ++looks) {
        const std::size_t found = FindLastIn(lines.At(number).text, before);
        if (found != notFound)
            return PlaceAt(number, found, hasWrapped);
        if (number == lines.First()) {
            number = lines.End();
            hasWrapped = true;
        }
        --number;
        before = lines.At(number).text.size();
    }
    return std::nullopt;
}

}
