#include "transfer/FileImage.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tarvin {

namespace {

// Some milliseconds of reading.
constexpr std::size_t largestRead = 16 << 20;

}

bool FileImage::Load(KelFile& file, const std::atomic<bool>& stop) {
    Clear();
    if (ReadAll(file, stop))
        return true;
    Clear();
    return false;
}

void FileImage::Clear() {
    content.reset();
    capacity = length = position = 0;
}

bool FileImage::ReadAll(KelFile& file, const std::atomic<bool>& stop) {
    const auto size = file.Size();
    // One byte more than the file holds, so that the read that finds its end needs no more room.
    if (!size || *size > maximumLength || !Grow(static_cast<std::size_t>(*size) + 1))
        return false;
    for (;;) {
        // A file that grows while it is read.
        if (length == capacity && !Grow(capacity * 2))
            return false;
        const auto count = file.Read(content.get() + length, std::min(capacity - length, largestRead));
        if (!count || stop)
            return false;
        length += *count;
        if (*count == 0)
            return length <= maximumLength;
    }
}

bool FileImage::Grow(std::size_t newCapacity) {
    if (newCapacity > 2 * maximumLength)
        return false;
    // Not value-initialised: pages that the read does not reach are never touched.
    std::unique_ptr<char[]> larger(new (std::nothrow) char[newCapacity]);
    if (!larger)
        return false;
    if (length > 0)
        std::memcpy(larger.get(), content.get(), length);
    content = std::move(larger);
    capacity = newCapacity;
    return true;
}

std::span<const std::uint8_t> FileImage::Next(std::size_t byteCount) {
    const std::size_t taken = std::min(byteCount, length - position);
    const auto* start = reinterpret_cast<const std::uint8_t*>(content.get()) + position;
    position += taken;
    return {start, taken};
}

}
