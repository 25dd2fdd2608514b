#include "files/ObjectStream.h"

#include <cassert>
#include <limits>

namespace tarvin {

std::string_view ObjectReader::Bytes(std::size_t byteCount) {
    if (byteCount > rest.size()) {
        Fail();
        return {};
    }
    const std::string_view taken = rest.substr(0, byteCount);
    rest.remove_prefix(byteCount);
    return taken;
}

std::uint32_t ObjectReader::Count(std::size_t elementSize, std::uint32_t maximum) {
    assert(elementSize > 0);
    const std::uint32_t count = Number();
    // Divided, not multiplied: a product of numbers from a file may overflow.
    if (count <= maximum && count <= rest.size() / elementSize)
        return count;
    Fail();
    return 0;
}

void ObjectReader::Fail() {
    hasFailed = true;
    // With nothing left, every later read fails too.
    rest = {};
}

std::uint32_t ObjectReader::LittleEndian(std::string_view bytes) {
    // A failed read has no bytes and gives 0.
    std::uint32_t number = 0;
    for (auto byte = bytes.rbegin(); byte != bytes.rend(); ++byte)
        number = number << 8 | static_cast<unsigned char>(*byte);
    return number;
}

void ObjectWriter::Text(std::string_view text) {
    assert(text.size() <= std::numeric_limits<std::uint32_t>::max());
    Number(static_cast<std::uint32_t>(text.size()));
    Bytes(text);
}

// Byte by byte, so that the result is the same on every processor.
void ObjectWriter::Append(std::uint32_t number, std::size_t byteCount) {
    for (; byteCount > 0; --byteCount, number >>= 8)
        bytes.push_back(static_cast<char>(number & 0xFF));
}

}
