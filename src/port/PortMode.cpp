#include "port/PortMode.h"

#include <charconv>
#include <string>

namespace tarvin {

namespace {

constexpr int highestBitsPerSecond = 4000000;

std::string_view ValueOf(std::string_view text, std::string_view key) {
    const std::string assignment = std::string(key) + "=";
    std::size_t start = text.find(assignment);
    if (start == std::string_view::npos)
        return {};
    start += assignment.size();
    return text.substr(start, text.find(' ', start) - start);
}

bool ParseNumber(std::string_view text, int lowest, int highest, int& number) {
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= lowest && number <= highest;
}

bool ParseParity(std::string_view text, PortMode::Parity& parity) {
    // In the order of the enumeration.
    constexpr std::string_view letters = "NEOMS";
    const char upper = text.size() == 1 ? static_cast<char>(text[0] & ~0x20) : '\0';
    const std::size_t found = letters.find(upper);
    if (found == std::string_view::npos)
        return false;
    parity = static_cast<PortMode::Parity>(found);
    return true;
}

bool ParseStopBits(std::string_view text, PortMode::StopBits& stopBits) {
    stopBits = text == "2"     ? PortMode::StopBits::Two
               : text == "1.5" ? PortMode::StopBits::OneAndAHalf
                               : PortMode::StopBits::One;
    return text == "1" || text == "1.5" || text == "2";
}

}

std::optional<PortMode> ParsePortMode(std::string_view text) {
    PortMode mode;
    const bool isValid = ParseNumber(ValueOf(text, "baud"), 1, highestBitsPerSecond, mode.bitsPerSecond) &&
                         ParseParity(ValueOf(text, "parity"), mode.parity) &&
                         ParseNumber(ValueOf(text, "data"), 5, 8, mode.dataBits) &&
                         ParseStopBits(ValueOf(text, "stop"), mode.stopBits);
    if (!isValid)
        return std::nullopt;
    return mode;
}

}
