#pragma once
// The lines of a text pane: bounded, with tabs expanded, and what of them is selected. Knows nothing of windows.
// Lines are counted from the first that ever came, so that a line keeps its number when older ones are dropped.

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace tarvin {

class TextLines {
public:
    static constexpr std::size_t capacity = 5000;
    static constexpr std::size_t tabColumns = 16;

    enum class Kind { Received, Transmitted, Note };

    struct Line {
        Kind kind;
        std::u32string text;
    };

    // Between the character before `column` and the one at it.
    struct Position {
        std::uint64_t line = 0;
        std::size_t column = 0;
        auto operator<=>(const Position&) const = default;
    };

    // One line, in UTF-8; what is none is shown as replacement characters. Drops the oldest line if there are too many.
    void Append(Kind kind, std::string_view utf8);
    // More of the last line; a line of its own if the last one is of another kind.
    void Extend(Kind kind, std::string_view utf8);
    void Clear();

    std::size_t Count() const { return lines.size(); }
    std::uint64_t First() const { return first; }
    // One past the last.
    std::uint64_t End() const { return first + lines.size(); }
    // `number` is one of First() to End() - 1.
    const Line& At(std::uint64_t number) const { return lines[static_cast<std::size_t>(number - first)]; }
    // In columns.
    std::size_t LongestLine() const { return longest; }

    // The nearest position that there is.
    Position Clamped(Position position) const;
    Position Last() const;

    // From `anchor` to `caret`, in either order; lines that are dropped leave the selection.
    void Select(Position anchor, Position caret);
    Position Anchor() const { return selectionAnchor; }
    Position Caret() const { return selectionCaret; }
    bool HasSelection() const { return selectionAnchor != selectionCaret; }
    // The selected columns of a line, as begin and end; equal if there are none.
    struct Columns {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    Columns SelectedIn(std::uint64_t number) const;
    // Lines are ended by LF, but for the last.
    std::string SelectedText() const;

private:
    std::deque<Line> lines;
    std::uint64_t first = 0;
    std::size_t longest = 0;
    Position selectionAnchor;
    Position selectionCaret;
};

}
