#pragma once
// The SHA-256 checksum (FIPS 180-4) of bytes that come piece by piece. One thread at a time.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvin {

class Sha256 {
public:
    void Add(std::string_view bytes);

    // The checksum of all bytes so far as 64 lower-case hexadecimal digits. More bytes may follow.
    std::string Digits() const;

private:
    static constexpr std::size_t blockSize = 64;

    void AddBlock(const char* block);

    std::array<std::uint32_t, 8> state = {0x6a09e667, 0xbb67ae85, 0x3c6ef372, 0xa54ff53a,
                                          0x510e527f, 0x9b05688c, 0x1f83d9ab, 0x5be0cd19};
    std::array<char, blockSize> rest = {}; // the first byteCount % blockSize of these wait for a whole block
    std::uint64_t byteCount = 0;
};

}
