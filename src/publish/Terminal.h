#pragma once
// The terminal at standard output, for a table that is drawn again and again. One source for each system. One object at
// a time.

#include "publish/StatusTable.h"

#include <chrono>
#include <memory>
#include <string_view>

namespace tarvin {

class Terminal {
public:
    // Null if standard output is no terminal that can be drawn on.
    static std::unique_ptr<Terminal> Open();

    // Gives the terminal back as it was, however the user has ended the table.
    virtual ~Terminal() = default;

    // The present size.
    virtual TableRoom Room() const = 0;

    // Waits for `longest`. True if the user wants to end: by q, Ctrl+C, or a request of the system to end.
    virtual bool WaitForEnd(std::chrono::milliseconds longest) = 0;

    // Takes text with control sequences. False if the terminal is gone.
    virtual bool Write(std::string_view text) = 0;
};

// The sequences that begin and end drawing: a screen of its own without a cursor, and back to the one before.
inline constexpr std::string_view beginDrawing = "\x1b[?1049h\x1b[?25l\x1b[H\x1b[J";
inline constexpr std::string_view endDrawing = "\x1b[?25h\x1b[?1049l";

}
