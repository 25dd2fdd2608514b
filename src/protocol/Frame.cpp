#include "protocol/Frame.h"

#include "files/FileNames.h"

#include <algorithm>
#include <cstdint>

namespace tarvin {

char MessageChecksum(std::string_view text) {
    std::uint32_t sum = 0;
    for (const char byte : text)
        sum += static_cast<unsigned char>(byte);
    std::uint32_t checksum = (65536 - sum) & 127;
    // Printable without becoming ambiguous at the bound: 32 is lifted too, and then all are one less.
    if (checksum <= 32)
        checksum += 64;
    return static_cast<char>(checksum - 1);
}

void BuildFrame(std::string_view text, std::string& frame) {
    frame.assign(text);
    frame.push_back(MessageChecksum(text));
    frame.push_back(frameEnd);
}

std::string_view DataPayload(std::string_view line) {
    const std::size_t found = line.find(code::uploadData);
    if (found == std::string_view::npos)
        return {};
    line.remove_prefix(found + code::uploadData.size());
    return line.substr(0, line.empty() ? 0 : line.size() - 1);
}

std::string_view FileNumber(std::string_view line) {
    line.remove_prefix(std::min<std::size_t>(line.size(), 4));
    while (line.starts_with('0'))
        line.remove_prefix(1);
    return line.substr(0, line.empty() ? 0 : line.size() - 1);
}

bool IsUsableFileNumber(std::string_view number) {
    const bool isDotsOnly = number.find_first_not_of('.') == std::string_view::npos;
    const bool isForbidden = std::any_of(number.begin(), number.end(), [](char byte) {
        return byte == '/' || byte == '\\' || byte == ':' || static_cast<unsigned char>(byte) < 0x20 || byte == 0x7F;
    });
    return !isDotsOnly && !isForbidden && !IsDeviceName(FromBytes(number));
}

}
