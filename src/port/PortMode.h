#pragma once
// The mode of a serial line (speed and form of a character) as numbers. Any thread.

#include <optional>
#include <string_view>

namespace tarvin {

struct PortMode {
    enum class Parity { None, Even, Odd, Mark, Space };
    enum class StopBits { One, OneAndAHalf, Two };

    int bitsPerSecond = 0; // 1 to 4,000,000
    Parity parity = Parity::None;
    int dataBits = 8; // 5 to 8
    StopBits stopBits = StopBits::One;
};

// Reads a text such as "baud=2400 parity=N data=8 stop=1"; none if a part is missing or out of range. Parity is one of
// N, E, O, M, S in either case, stop is 1, 1.5 or 2.
std::optional<PortMode> ParsePortMode(std::string_view text);

}
