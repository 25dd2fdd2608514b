#pragma once
// Where the keys move the caret of a text pane. Any thread.

#include "ui/TextLines.h"

#include <optional>

namespace tarvin {

enum class CaretMove { Left, Right, Up, Down, LineStart, LineEnd, PageUp, PageDown, TextStart, TextEnd };

// The move of a key as wxWidgets numbers it. None if the key moves no caret.
std::optional<CaretMove> CaretMoveOf(int key, bool hasControl);

// Moves within one line end what `Up` and the like remember of the column.
bool IsWithinLine(CaretMove move);

// Moves up and down go to `wantedColumn`, or to the end of a shorter line. Left and right go on in the next line. A
// move beyond the first or last line ends at the start or the end of the text. Requires pageLines > 0.
TextLines::Position Moved(const TextLines& lines, TextLines::Position caret, CaretMove move, std::size_t wantedColumn,
                          std::uint64_t pageLines);

}
