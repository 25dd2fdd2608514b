#pragma once
// Objects as bytes: little-endian numbers, and texts and lists with a count in front. One thread at a time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvin {

// Reads bytes that may hold anything. The reader fails at the first object that the bytes do not hold whole: from then
// on every number is 0, every text is empty and no bytes are left. The texts are views of the bytes that the
// constructor got.
class ObjectReader {
public:
    explicit ObjectReader(std::string_view rest) : rest(rest) {}

    std::uint8_t Byte() { return static_cast<std::uint8_t>(LittleEndian(Bytes(1))); }
    std::uint16_t Unit() { return static_cast<std::uint16_t>(LittleEndian(Bytes(2))); }
    std::uint32_t Number() { return LittleEndian(Bytes(4)); }
    std::int32_t Integer() { return static_cast<std::int32_t>(Number()); }
    std::string_view Bytes(std::size_t byteCount);
    // A count of bytes, then the bytes, as ObjectWriter::Text writes them.
    std::string_view Text() { return Bytes(Number()); }
    // The number of elements that follow. Fails if it is more than `maximum`, or if the bytes left cannot hold that
    // many elements of at least `elementSize` bytes each. The caller may therefore allocate that many. Requires
    // elementSize > 0.
    std::uint32_t Count(std::size_t elementSize, std::uint32_t maximum);

    // Makes the reader fail. For a caller that finds wrong values in bytes that could be read.
    void Fail();
    bool HasFailed() const { return hasFailed; }
    // The bytes that are still to be read.
    std::string_view Rest() const { return rest; }

private:
    static std::uint32_t LittleEndian(std::string_view bytes);

    std::string_view rest;
    bool hasFailed = false;
};

class ObjectWriter {
public:
    void Byte(std::uint8_t number) { Append(number, 1); }
    void Unit(std::uint16_t number) { Append(number, 2); }
    void Number(std::uint32_t number) { Append(number, 4); }
    void Integer(std::int32_t number) { Number(static_cast<std::uint32_t>(number)); }
    void Bytes(std::string_view more) { bytes += more; }
    // Requires fewer than 2^32 bytes.
    void Text(std::string_view text);

    const std::string& Written() const { return bytes; }

private:
    void Append(std::uint32_t number, std::size_t byteCount);

    std::string bytes;
};

}
