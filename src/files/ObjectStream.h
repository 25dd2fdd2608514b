#pragma once
// Objects as bytes: little-endian numbers, and texts and lists behind a count. Knows nothing of files and of what the
// objects mean. One thread at a time.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvin {

// Reads bytes that need not be what they claim. Once something is not there whole, the reader has failed: from then on
// every number is 0, every text is empty and nothing is left. What it returns are views of the bytes it was given.
class ObjectReader {
public:
    explicit ObjectReader(std::string_view objectBytes) : rest(objectBytes) {}

    std::uint8_t Byte() { return static_cast<std::uint8_t>(LittleEndian(Bytes(1))); }
    std::uint16_t Unit() { return static_cast<std::uint16_t>(LittleEndian(Bytes(2))); }
    std::uint32_t Number() { return LittleEndian(Bytes(4)); }
    std::int32_t Integer() { return static_cast<std::int32_t>(Number()); }
    std::string_view Bytes(std::size_t byteCount);
    // The count of bytes, then the bytes: what ObjectWriter::Text writes.
    std::string_view Text() { return Bytes(Number()); }
    // How many elements follow. Fails if they are more than `maximum`, or more than can be there when each takes at
    // least `elementSize` bytes, so that the result may size an allocation.
    std::uint32_t Count(std::size_t elementSize, std::uint32_t maximum);

    // For a reader whose own rules are broken.
    void Fail();
    bool HasFailed() const { return hasFailed; }
    // The bytes that have not been read.
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
    void Text(std::string_view text);

    const std::string& Written() const { return bytes; }

private:
    void Append(std::uint32_t number, std::size_t byteCount);

    std::string bytes;
};

}
