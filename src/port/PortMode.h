#pragma once
// The line settings of a port as numbers. Knows nothing of any system's way to set them. Pure, any thread.

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

// From a text such as "baud=2400 parity=N data=8 stop=1"; none for anything that no port could do.
std::optional<PortMode> ParsePortMode(std::string_view text);

}
