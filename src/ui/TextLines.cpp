#include "ui/TextLines.h"

#include "base/KelText.h"

#include <algorithm>
#include <cassert>
#include <string_view>

namespace tarvin {

namespace {

// Tab stops count from the start of the line, so a text that extends it goes on from its length.
void AppendExpanded(std::u32string& text, std::string_view utf8) {
    text.reserve(text.size() + utf8.size());
    for (const char32_t character : ToCharacters(FromUtf8(utf8))) {
        if (character == U'\t')
            text.append(TextLines::tabColumns - text.size() % TextLines::tabColumns, U' ');
        else
            text.push_back(character);
    }
}

}

void TextLines::Append(const TrafficLine& line) {
    if (!line.extendsLast || lines.empty() || lines.back().kind != line.kind)
        lines.push_back({line.kind, {}, line.time});
    AppendExpanded(lines.back().text, line.text);
    longest = std::max(longest, lines.back().text.size());
    if (lines.size() > capacity) {
        lines.pop_front();
        ++first;
        // The selection must not reach into the dropped line.
        const Position oldest = {first, 0};
        selectionAnchor = std::max(selectionAnchor, oldest);
        selectionCaret = std::max(selectionCaret, oldest);
    }
}

const TextLines::Line& TextLines::At(std::uint64_t number) const {
    assert(number >= first && number < End());
    return lines[static_cast<std::size_t>(number - first)];
}

void TextLines::Clear() {
    // Numbers go on: a number that was taken before Clear does not name a new line.
    first = End();
    lines.clear();
    longest = 0;
    selectionAnchor = selectionCaret = {first, 0};
}

TextLines::Position TextLines::Clamped(Position position) const {
    if (lines.empty() || position.line < first)
        return {first, 0};
    if (position.line >= End())
        return Last();
    position.column = std::min(position.column, At(position.line).text.size());
    return position;
}

TextLines::Position TextLines::Last() const {
    if (lines.empty())
        return {first, 0};
    return {End() - 1, lines.back().text.size()};
}

void TextLines::Select(Position anchor, Position caret) {
    selectionAnchor = Clamped(anchor);
    selectionCaret = Clamped(caret);
}

TextLines::Columns TextLines::SelectedIn(std::uint64_t number) const {
    const Position begin = std::min(selectionAnchor, selectionCaret);
    const Position end = std::max(selectionAnchor, selectionCaret);
    if (number < begin.line || number > end.line)
        return {};
    return {number == begin.line ? begin.column : 0, number == end.line ? end.column : At(number).text.size()};
}

std::string TextLines::TextOf(std::uint64_t number, Columns columns) const {
    const std::u32string_view text = At(number).text;
    return ToUtf8(FromCharacters(text.substr(columns.begin, columns.end - columns.begin)));
}

std::string TextLines::SelectedText(const Head& head) const {
    std::string result;
    const std::uint64_t begin = std::min(selectionAnchor, selectionCaret).line;
    const std::uint64_t end = std::max(selectionAnchor, selectionCaret).line;
    for (std::uint64_t number = begin; HasSelection() && number <= end; ++number) {
        const Columns columns = SelectedIn(number);
        if (head && begin != end && columns.begin == 0)
            result += head(number);
        result += TextOf(number, columns);
        if (number != end)
            result += '\n';
    }
    return result;
}

std::string TextLines::AllText(const Head& head) const {
    std::string result;
    for (std::uint64_t number = first; number < End(); ++number) {
        if (head)
            result += head(number);
        result += TextOf(number, {0, At(number).text.size()}) + "\r\n";
    }
    return result;
}

}
