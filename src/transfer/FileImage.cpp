#include "transfer/FileImage.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace tarvin {

namespace {

// Takes some milliseconds, so that a read ends soon after `stop` is set.
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
    // One byte more than the file holds: the read that finds its end needs room too.
    if (!size || *size > maximumLength || !Grow(static_cast<std::size_t>(*size) + 1))
        return false;
    for (;;) {
        // The file grows while it is read.
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
    // Without initial values: the system then gives no memory for pages that the read does not reach.
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
