#include "protocol/Frame.h"

#include <algorithm>
#include <cstdint>

namespace tarvin {

char MessageChecksum(std::string_view text) {
    std::uint32_t sum = 0;
    for (const char byte : text)
        sum += static_cast<unsigned char>(byte);
    std::uint32_t checksum = (65536 - sum) & 127;
    // 0 to 32 are lifted by 64, and then every result is one less: the character prints, and no two ranges overlap.
    if (checksum <= 32)
        checksum += 64;
    return static_cast<char>(checksum - 1);
}

void BuildFrame(std::string_view text, std::string& frame) {
    frame.assign(text);
    frame.push_back(MessageChecksum(text));
    frame.push_back(frameEnd);
}

bool HoldsAnyCode(std::string_view message, std::initializer_list<std::string_view> codes) {
    return std::ranges::any_of(codes, [&](std::string_view each) { return HoldsCode(message, each); });
}

bool HoldsKnownCode(std::string_view message) {
    return HoldsAnyCode(message, {code::linkTest, code::uploadRequest, code::downloadRequest, code::uploadData,
                                  code::uploadEnd, code::dataGood, code::dataBad});
}

std::string_view DataPayload(std::string_view message) {
    const std::size_t found = message.find(code::uploadData);
    if (found == std::string_view::npos)
        return {};
    message.remove_prefix(found + code::uploadData.size());
    return message.substr(0, message.empty() ? 0 : message.size() - 1);
}

std::string_view FileNumber(std::string_view message) {
    message.remove_prefix(std::min<std::size_t>(message.size(), 4));
    while (message.starts_with('0'))
        message.remove_prefix(1);
    return message.substr(0, message.empty() ? 0 : message.size() - 1);
}

}
