#include "controller/ControllerFrame.h"

#include <cstdint>

namespace tarvin::controller {

char MessageChecksum(std::string_view text) {
    std::uint32_t sum = 0;
    for (const char character : text)
        sum += static_cast<std::uint8_t>(character);
    std::uint32_t checksum = (0U - sum) & 0x7F;
    // Moves the value into the printable range. 32 is moved as well, because 1 is subtracted from every value.
    if (checksum <= 32)
        checksum += 64;
    return static_cast<char>(checksum - 1);
}

void BuildFrame(std::string_view text, std::string& frame) {
    frame.assign(text);
    frame += MessageChecksum(text);
    frame += frameEnd;
}

bool HasRightChecksum(std::string_view frame) {
    return !frame.empty() && frame.back() == MessageChecksum(frame.substr(0, frame.size() - 1));
}

std::string Readable(std::string_view bytes) {
    constexpr char digits[] = "0123456789abcdef";
    std::string readable;
    for (const char character : bytes) {
        const auto byte = static_cast<std::uint8_t>(character);
        if (byte >= 0x20 && byte <= 0x7E) {
            readable += character;
        } else {
            readable += '[';
            readable += digits[byte >> 4];
            readable += digits[byte & 15];
            readable += ']';
        }
    }
    return readable;
}

std::string Quoted(std::string_view bytes) {
    constexpr std::size_t longestQuote = 80;
    std::string quoted(1, '"');
    quoted += Readable(bytes.substr(0, longestQuote));
    if (bytes.size() > longestQuote)
        quoted += "...";
    quoted += '"';
    return quoted;
}

}
