#include "line/ReceiveBuffer.h"

#include <algorithm>
#include <utility>

namespace tarvin {

void ReceiveBuffer::Clear() {
    count = errorsBegin = errorsEnd = 0;
    errorCount = 0;
    isAwaitingErrors = false;
}

void ReceiveBuffer::NoteErrors(std::uint32_t newErrorCount) {
    if (newErrorCount == 0)
        return;
    if (errorsEnd <= errorsBegin)
        errorsBegin = count;
    errorsEnd = count + 1;
    errorCount += newErrorCount;
    isAwaitingErrors = true;
}

std::uint32_t ReceiveBuffer::TakeErrorCount() {
    return std::exchange(errorCount, 0);
}

std::optional<ReceivedMessage> ReceiveBuffer::TakeMessage(std::uint8_t terminator, bool keepTerminator) {
    const auto held = Bytes();
    const auto found = std::find(held.begin(), held.end(), terminator);
    if (found == held.end())
        return std::nullopt;
    ReceivedMessage message;
    for (auto byte = held.begin(); byte <= found; ++byte) {
        const bool isPrintable = *byte >= 0x20 && *byte <= 0x7E;
        if (isPrintable || (byte == found && keepTerminator))
            message.text.push_back(static_cast<char>(*byte));
    }
    message.bytes.assign(held.begin(), found);
    const auto rest = found + 1;
    const auto length = static_cast<std::size_t>(rest - held.begin());
    message.hasErrors = errorsBegin < std::min(errorsEnd, length);
    if (message.hasErrors)
        message.errorCount = TakeErrorCount();
    errorsBegin -= std::min(errorsBegin, length);
    errorsEnd -= std::min(errorsEnd, length);
    std::copy(rest, held.end(), bytes.begin());
    count = static_cast<std::size_t>(held.end() - rest);
    return message;
}

}
