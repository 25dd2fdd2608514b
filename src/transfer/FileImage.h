#pragma once
// The content of a file that is being downloaded, as it was when it was read: another program may rewrite the file
// during the download.

#include "files/KelFile.h"

#include <atomic>
#include <cstddef>
#include <memory>
#include <span>
#include <string_view>

namespace tarvin {

class FileImage {
public:
    // In bytes. Transfer counters and status texts end at 2^31 - 1.
    static constexpr std::size_t maximumLength = 0x7FFFFFFF;

    // Reads the open file to its end. False, with an empty image, if it cannot be read, is too long, does not fit in
    // memory, or if another thread sets `stop`: a program that ends does not wait for gigabytes.
    bool Load(KelFile& file, const std::atomic<bool>& stop);
    void Clear();

    std::size_t Length() const { return length; }
    std::size_t Position() const { return position; }
    std::string_view Content() const { return {content.get(), length}; }

    // Takes the next bytes, at most `byteCount`; none at the end. Valid until Load or Clear.
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
