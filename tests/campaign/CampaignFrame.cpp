#include "campaign/CampaignFrame.h"

#include <algorithm>
#include <cstdio>

namespace tarvin::campaign {

namespace {

bool IsPrintable(char byte) {
    return byte >= 32 && byte <= 126;
}

}

char ChecksumOf(std::string_view text) {
    unsigned sum = 0;
    for (const char byte : text)
        sum += static_cast<unsigned char>(byte);
    // What the sum lacks to a multiple of 128, moved into the printable range.
    const unsigned missing = (128 - sum % 128) % 128;
    return static_cast<char>((missing <= 32 ? missing + 64 : missing) - 1);
}

bool IsRight(std::string_view message) {
    return !message.empty() && std::all_of(message.begin(), message.end(), IsPrintable) &&
           message.back() == ChecksumOf(message.substr(0, message.size() - 1));
}

std::string PrintableOf(std::string_view message) {
    std::string kept;
    std::copy_if(message.begin(), message.end(), std::back_inserter(kept), IsPrintable);
    return kept;
}

std::string Readable(std::string_view bytes) {
    std::string text;
    for (const char byte : bytes) {
        char shown[8] = {byte, '\0'};
        if (!IsPrintable(byte))
            std::snprintf(shown, sizeof shown, "[%02x]", static_cast<unsigned>(static_cast<unsigned char>(byte)));
        text += shown;
    }
    return text;
}

}
