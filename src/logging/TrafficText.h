#pragma once
// How bytes of the line are written wherever a person reads them. Knows nothing of where that is.

#include <cstdint>
#include <span>
#include <string>

namespace tarvin {

// 0x20 to 0x7F as themselves, every other byte as two lower-case hexadecimal digits in brackets.
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

}
