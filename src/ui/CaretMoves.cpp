#include "ui/CaretMoves.h"

#include <cassert>

#include <wx/defs.h>

namespace tarvin {

namespace {

TextLines::Position MovedUp(const TextLines& lines, TextLines::Position caret, std::size_t wantedColumn,
                            std::uint64_t lineCount) {
    if (caret.line < lines.First() + lineCount)
        return {lines.First(), caret.line == lines.First() ? 0 : wantedColumn};
    return {caret.line - lineCount, wantedColumn};
}

TextLines::Position MovedDown(const TextLines& lines, TextLines::Position caret, std::size_t wantedColumn,
                              std::uint64_t lineCount) {
    const std::uint64_t last = lines.Last().line;
    if (caret.line == last)
        return lines.Last();
    return {caret.line + lineCount < last ? caret.line + lineCount : last, wantedColumn};
}

}

std::optional<CaretMove> CaretMoveOf(int key, bool hasControl) {
    switch (key) {
    case WXK_LEFT:
        return CaretMove::Left;
    case WXK_RIGHT:
        return CaretMove::Right;
    case WXK_UP:
        return CaretMove::Up;
    case WXK_DOWN:
        return CaretMove::Down;
    case WXK_PAGEUP:
        return CaretMove::PageUp;
    case WXK_PAGEDOWN:
        return CaretMove::PageDown;
    case WXK_HOME:
        return hasControl ? CaretMove::TextStart : CaretMove::LineStart;
    case WXK_END:
        return hasControl ? CaretMove::TextEnd : CaretMove::LineEnd;
    default:
        return std::nullopt;
    }
}

bool IsWithinLine(CaretMove move) {
    return move != CaretMove::Up && move != CaretMove::Down && move != CaretMove::PageUp && move != CaretMove::PageDown;
}

TextLines::Position Moved(const TextLines& lines, TextLines::Position caret, CaretMove move, std::size_t wantedColumn,
                          std::uint64_t pageLines) {
    assert(pageLines > 0);
    if (lines.Count() == 0)
        return caret;
    caret = lines.Clamped(caret);
    switch (move) {
    case CaretMove::Left:
        if (caret.column > 0)
            return {caret.line, caret.column - 1};
        return caret.line > lines.First() ? lines.Clamped({caret.line - 1, static_cast<std::size_t>(-1)}) : caret;
    case CaretMove::Right:
        if (caret.column < lines.At(caret.line).text.size())
            return {caret.line, caret.column + 1};
        return caret.line + 1 < lines.End() ? TextLines::Position{caret.line + 1, 0} : caret;
    case CaretMove::Up:
        return lines.Clamped(MovedUp(lines, caret, wantedColumn, 1));
    case CaretMove::Down:
        return lines.Clamped(MovedDown(lines, caret, wantedColumn, 1));
    case CaretMove::PageUp:
        return lines.Clamped(MovedUp(lines, caret, wantedColumn, pageLines));
    case CaretMove::PageDown:
        return lines.Clamped(MovedDown(lines, caret, wantedColumn, pageLines));
    case CaretMove::LineStart:
        return {caret.line, 0};
    case CaretMove::LineEnd:
        return {caret.line, lines.At(caret.line).text.size()};
    case CaretMove::TextStart:
        return {lines.First(), 0};
    case CaretMove::TextEnd:
        return lines.Last();
    }
    return caret;
}

}
