#include "transfer/FileImage.h"

#include "base/Messages.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace tarvin {

namespace {

// Takes some milliseconds, so that a read ends soon after `stop` is set.
constexpr std::size_t largestRead = 16 << 20;

Error TooLarge() {
    return {Filled(text::transferReason::tooLarge, {ToText(FileImage::maximumLength)})};
}

}

Result<> FileImage::Load(NativeFile& file, const std::atomic<bool>& stop) {
    Result<> begun = Begin(file);
    while (begun) {
        const auto count = ReadPiece(file, largestRead);
        if (count && *count == 0)
            return {};
        if (!count || stop)
            begun = count ? Error{} : count.Reason();
    }
    Clear();
    return begun;
}

Result<> FileImage::Begin(NativeFile& file) {
    Clear();
    const auto size = file.Size();
    if (!size)
        return size.Reason();
    if (*size > maximumLength)
        return TooLarge();
    // One byte more than the file holds: the read that finds its end needs room too.
    return Grow(static_cast<std::size_t>(*size) + 1);
}

Result<std::size_t> FileImage::ReadPiece(NativeFile& file, std::size_t byteCount) {
    // The file grows while it is read.
    if (length == capacity) {
        if (const auto grown = Grow(capacity * 2); !grown)
            return grown.Reason();
    }
    const auto count = file.Read(content.get() + length, std::min(capacity - length, byteCount));
    if (!count)
        return count;
    length += *count;
    if (length > maximumLength)
        return TooLarge();
    return count;
}

void FileImage::Clear() {
    content.reset();
    capacity = length = position = summed = 0;
    linesTaken = 0;
    sum = {};
}

Result<> FileImage::Grow(std::size_t newCapacity) {
    if (newCapacity > 2 * maximumLength)
        return TooLarge();
    // Without initial values: the system then gives no memory for pages that the read does not reach.
    std::unique_ptr<char[]> larger(new (std::nothrow) char[newCapacity]);
    if (!larger)
        return Error{text::transferReason::noMemory};
    if (length > 0)
        std::memcpy(larger.get(), content.get(), length);
    content = std::move(larger);
    capacity = newCapacity;
    return {};
}

std::span<const std::uint8_t> FileImage::Next(std::size_t byteCount, bool upToLineEnd) {
    std::size_t taken = std::min(byteCount, length - position);
    const std::size_t lineEnd = upToLineEnd ? Content().substr(position, taken).find('\n') : std::string_view::npos;
    if (lineEnd != std::string_view::npos)
        taken = lineEnd + 1;
    const auto* start = reinterpret_cast<const std::uint8_t*>(content.get()) + position;
    position += taken;
    linesTaken += std::count(start, start + taken, '\n');
    return {start, taken};
}

bool FileImage::Sum(std::size_t end, std::size_t most) {
    const std::string_view lacking = Content().substr(0, end).substr(summed);
    const std::string_view added = lacking.substr(0, most);
    sum.Add(added);
    summed += added.size();
    return added.size() == lacking.size();
}

}
