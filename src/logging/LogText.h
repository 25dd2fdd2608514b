#pragma once
// What the logs share: local time, bytes of the line, the last line, and how often a failed log is tried again.

#include "base/KelText.h"

#include <chrono>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarvin {

// A log that cannot be written is tried again this often.
inline constexpr std::chrono::minutes logRetryPeriod{1};

// Time and date as the user's locale writes them.
struct LocalTimeText {
    KelText time;
    KelText date;
};

// The local time now. Any thread.
LocalTimeText LocalTimeNow();

// Appends the byte as people read it: 0x20 to 0x7F as a character, every other byte as two lower-case hexadecimal
// digits in brackets. Inline, because it runs for every byte of the line.
inline void AppendTraffic(std::string& text, std::uint8_t byte) {
    constexpr char digits[] = "0123456789abcdef";
    if (byte >= 0x20 && byte <= 0x7F) {
        text.push_back(static_cast<char>(byte));
        return;
    }
    text.push_back('[');
    text.push_back(digits[byte >> 4]);
    text.push_back(digits[byte & 0x0F]);
    text.push_back(']');
}

inline void AppendTraffic(std::string& text, std::span<const std::uint8_t> bytes) {
    for (const std::uint8_t byte : bytes)
        AppendTraffic(text, byte);
}

// The text of the last line in either log. Comms log and activity log share one object, so that neither repeats the
// line that the other has just written. One thread at a time.
struct LastLogged {
    std::string text; // UTF-8

    bool Is(std::string_view other) const { return text == other; }
};

}
