#pragma once
// Finds a text in the lines of a text pane. Latin letters match in either case. Any thread.

#include "base/KelText.h"
#include "ui/TextLines.h"

#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

class TextSearch {
public:
    static constexpr std::size_t notFound = std::u32string::npos;

    // An empty text is found nowhere.
    TextSearch() = default;
    explicit TextSearch(KelTextView wanted);

    bool IsEmpty() const { return wanted.empty(); }
    std::size_t Length() const { return wanted.size(); }

    // The first place in `text` that begins at `from` or behind it.
    std::size_t FindIn(std::u32string_view text, std::size_t from) const;

    // A place in the lines, always within one line.
    struct Place {
        TextLines::Position begin;
        TextLines::Position end;
        // The search has reached the last line, or the first, and has gone on at the other end.
        bool hasWrapped = false;
    };
    // The first place that begins at `from` or behind it, and the last one that begins in front of `from`. Each goes on
    // at the other end of the lines. None if there is no place.
    std::optional<Place> Next(const TextLines& lines, TextLines::Position from) const;
    std::optional<Place> Previous(const TextLines& lines, TextLines::Position from) const;

private:
    std::size_t FindLastIn(std::u32string_view text, std::size_t before) const;
    Place PlaceAt(std::uint64_t line, std::size_t column, bool hasWrapped) const;

    std::u32string wanted; // in lower case
};

}
