#include "protocol/IncomingCheck.h"

#include "protocol/Frame.h"

#include <set>
#include <string_view>

namespace tarvin {

namespace {

constexpr std::size_t messagesRemembered = 16;
// One right message in 95 is chance. Different texts: a controller that repeats one message repeats its chance.
constexpr std::size_t rightOnesNeeded = 8;
constexpr int wrongOnesInARow = 8;

bool Fits(std::string_view characters) {
    return !characters.empty() && characters.back() == MessageChecksum(characters.substr(0, characters.size() - 1));
}

}

bool IncomingCheck::IsRight(const ReceivedMessage& message) {
    std::string_view bytes = message.bytes;
    // The second half of the line end before it.
    if (bytes.starts_with('\n'))
        bytes.remove_prefix(1);
    return Fits(message.text) || Fits(bytes);
}

bool IncomingCheck::HasShownChecksums() const {
    std::set<std::string_view> different(recent.begin(), recent.end());
    different.erase(std::string_view());
    return different.size() >= rightOnesNeeded;
}

bool IncomingCheck::Learn(const std::string& text, bool isRight, bool sendsChecksums) {
    recent.push_back(isRight ? text : std::string());
    if (recent.size() > messagesRemembered)
        recent.pop_front();
    wrongInARow = isRight ? 0 : wrongInARow + 1;
    if (!sendsChecksums)
        return isRight && HasShownChecksums();
    return wrongInARow < wrongOnesInARow;
}

}
