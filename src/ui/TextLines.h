#pragma once
// The lines of a text pane and the selection in them. Bounded, with tabs expanded. A line is numbered from the first
// one ever appended, so that it keeps its number when older lines are dropped.

#include "line/TrafficQueue.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <string>

namespace tarvin {

class TextLines {
public:
    static constexpr std::size_t capacity = 5000;
    static constexpr std::size_t tabColumns = 16;

    using Kind = TrafficLine::Kind;

    struct Line {
        Kind kind;
        std::u32string text;
        Clock::TimePoint time; // of its beginning
    };

    // In front of the character at `column`.
    struct Position {
        std::uint64_t line = 0;
        std::size_t column = 0;
        auto operator<=>(const Position&) const = default;
    };

    // Adds the line, or its text to the last line if it extends that and is of the same kind. Bytes that are not UTF-8
    // become replacement characters. Drops the oldest line if there are more than `capacity`.
    void Append(const TrafficLine& line);
    void Clear();

    std::size_t Count() const { return lines.size(); }
    std::uint64_t First() const { return first; }
    // One past the last line.
    std::uint64_t End() const { return first + lines.size(); }
    // Requires First() <= number < End().
    const Line& At(std::uint64_t number) const;
    // In columns.
    std::size_t LongestLine() const { return longest; }

    // The nearest position in the text.
    Position Clamped(Position position) const;
    Position Last() const;

    // Selects from `anchor` to `caret`, in either order. Dropped lines leave the selection.
    void Select(Position anchor, Position caret);
    Position Anchor() const { return selectionAnchor; }
    Position Caret() const { return selectionCaret; }
    bool HasSelection() const { return selectionAnchor != selectionCaret; }
    // The selected columns of a line. Equal if none is selected.
    struct Columns {
        std::size_t begin = 0;
        std::size_t end = 0;
    };
    Columns SelectedIn(std::uint64_t number) const;
    // What stands in front of the text of a line where it is copied or saved.
    using Head = std::function<std::string(std::uint64_t number)>;
    // In UTF-8, with LF between the lines. A selection of several lines has each line's head, apart from that of a
    // first line which is not selected from its beginning.
    std::string SelectedText(const Head& head = {}) const;
    // All lines in UTF-8, each with its head and CR LF.
    std::string AllText(const Head& head = {}) const;

private:
    std::string TextOf(std::uint64_t number, Columns columns) const;

    std::deque<Line> lines;
    std::uint64_t first = 0;
    std::size_t longest = 0;
    Position selectionAnchor;
    Position selectionCaret;
};

}
