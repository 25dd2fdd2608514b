#pragma once
// The received bytes that no message has taken yet. Monitor thread.

#include <array>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace tarvin {

struct ReceivedMessage {
    std::string text;  // the bytes from 0x20 to 0x7E
    std::string bytes; // all bytes before the terminator
    // The driver reported errors in characters of the message, or of one that arrived with it.
    bool hasErrors = false;
    std::uint32_t errorCount = 0; // of these errors; 0 if a message before this one has counted them
};

class ReceiveBuffer {
public:
    static constexpr std::size_t capacity = 4000;

    // Free space behind the held bytes. Valid until the next non-const call; Commit says how much of it was filled.
    std::span<std::uint8_t> Room() { return std::span(bytes).subspan(count); }
    // Requires byteCount <= Room().size().
    void Commit(std::size_t byteCount) {
        assert(byteCount <= capacity - count);
        count += byteCount;
        // An error may be counted before its character can be read.
        if (isAwaitingErrors && byteCount > 0)
            errorsEnd = count;
        isAwaitingErrors = isAwaitingErrors && byteCount == 0;
    }
    // The driver has reported errors in characters that the next Commit adds, or in the first one after it.
    void NoteErrors(std::uint32_t newErrorCount);
    // The number of errors that no message has counted, once.
    std::uint32_t TakeErrorCount();

    std::span<const std::uint8_t> Bytes() const { return std::span(bytes).first(count); }
    std::size_t Count() const { return count; }
    void Clear();

    // Removes everything up to and including the first `terminator` and returns it as a message, whose text may be
    // empty. The text ends with a terminator from 0x20 to 0x7E, and with any other one if `keepTerminator` says so. No
    // value, with the buffer unchanged, if there is no terminator yet.
    std::optional<ReceivedMessage> TakeMessage(std::uint8_t terminator, bool keepTerminator);

private:
    std::array<std::uint8_t, capacity> bytes = {};
    std::size_t count = 0;
    // Where the characters with errors may be. Empty without one.
    std::size_t errorsBegin = 0;
    std::size_t errorsEnd = 0;
    std::uint32_t errorCount = 0;
    bool isAwaitingErrors = false; // the characters with errors have not been read yet
};

}
