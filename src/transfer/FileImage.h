#pragma once
// The whole content of a file being downloaded, as it was when it was read: another program may rewrite the file
// meanwhile. Knows nothing of lines or of the line.

#include "files/KelFile.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace tarvin {

class FileImage {
public:
    // Transfer counters and status texts end at 2^31 - 1 bytes.
    static constexpr std::size_t maximumLength = 0x7FFFFFFF;

    // Reads the open file to its end. False, with an empty image, if it cannot be read, is too long or does not fit in
    // memory, or if `stop` is set meanwhile: a program that is to end must not wait for gigabytes.
    bool Load(KelFile& file, const std::atomic<bool>& stop);
    void Clear();

    std::size_t Length() const { return length; }
    std::size_t Position() const { return position; }
    std::string_view Content() const { return {content.get(), length}; }

    // The next bytes from the position, at most `byteCount`; moves the position past them.
    std::span<const std::uint8_t> Next(std::size_t byteCount);

private:
    bool Grow(std::size_t newCapacity);
    bool ReadAll(KelFile& file, const std::atomic<bool>& stop);

    std::unique_ptr<char[]> content;
    std::size_t capacity = 0;
    std::size_t length = 0;
    std::size_t position = 0;
};

}
