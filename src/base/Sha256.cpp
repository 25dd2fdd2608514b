#include "base/Sha256.h"

#include <algorithm>
#include <bit>

namespace tarvin {

namespace {

// The first 32 bits of the fractional parts of the cube roots of the first 64 primes.
constexpr std::array<std::uint32_t, 64> roundConstants = {
    0x428a2f98, 0x71374491, 0xb5c0fbcf, 0xe9b5dba5, 0x3956c25b, 0x59f111f1, 0x923f82a4, 0xab1c5ed5,
    0xd807aa98, 0x12835b01, 0x243185be, 0x550c7dc3, 0x72be5d74, 0x80deb1fe, 0x9bdc06a7, 0xc19bf174,
    0xe49b69c1, 0xefbe4786, 0x0fc19dc6, 0x240ca1cc, 0x2de92c6f, 0x4a7484aa, 0x5cb0a9dc, 0x76f988da,
    0x983e5152, 0xa831c66d, 0xb00327c8, 0xbf597fc7, 0xc6e00bf3, 0xd5a79147, 0x06ca6351, 0x14292967,
    0x27b70a85, 0x2e1b2138, 0x4d2c6dfc, 0x53380d13, 0x650a7354, 0x766a0abb, 0x81c2c92e, 0x92722c85,
    0xa2bfe8a1, 0xa81a664b, 0xc24b8b70, 0xc76c51a3, 0xd192e819, 0xd6990624, 0xf40e3585, 0x106aa070,
    0x19a4c116, 0x1e376c08, 0x2748774c, 0x34b0bcb5, 0x391c0cb3, 0x4ed8aa4a, 0x5b9cca4f, 0x682e6ff3,
    0x748f82ee, 0x78a5636f, 0x84c87814, 0x8cc70208, 0x90befffa, 0xa4506ceb, 0xbef9a3f7, 0xc67178f2};

std::uint32_t BigEndian(const char* bytes) {
    std::uint32_t value = 0;
    for (int index = 0; index < 4; ++index)
        value = value << 8 | static_cast<std::uint8_t>(bytes[index]);
    return value;
}

}

void Sha256::Add(std::string_view bytes) {
    const std::size_t waiting = byteCount % blockSize;
    byteCount += bytes.size();
    if (waiting > 0) {
        const std::size_t taken = std::min(bytes.size(), blockSize - waiting);
        std::copy_n(bytes.data(), taken, rest.data() + waiting);
        bytes.remove_prefix(taken);
        if (waiting + taken < blockSize)
            return;
        AddBlock(rest.data());
    }
    for (; bytes.size() >= blockSize; bytes.remove_prefix(blockSize))
        AddBlock(bytes.data());
    std::copy(bytes.begin(), bytes.end(), rest.begin());
}

std::string Sha256::Digits() const {
    Sha256 padded = *this;
    const std::uint64_t bitCount = byteCount * 8;
    // A bit, then zeros until eight bytes of the last block are left for the length.
    const std::size_t zeroCount = (2 * blockSize - 9 - byteCount % blockSize) % blockSize;
    std::string padding = "\x80" + std::string(zeroCount, '\0');
    for (int shift = 56; shift >= 0; shift -= 8)
        padding.push_back(static_cast<char>(bitCount >> shift & 0xFF));
    padded.Add(padding);

    std::string digits;
    for (const std::uint32_t word : padded.state) {
        for (int shift = 28; shift >= 0; shift -= 4)
            digits.push_back("0123456789abcdef"[word >> shift & 0xF]);
    }
    return digits;
}

void Sha256::AddBlock(const char* block) {
    std::array<std::uint32_t, 64> words;
    for (std::size_t index = 0; index < 16; ++index)
        words[index] = BigEndian(block + 4 * index);
    for (std::size_t index = 16; index < words.size(); ++index) {
        const std::uint32_t early = words[index - 15];
        const std::uint32_t late = words[index - 2];
        words[index] = words[index - 16] + (std::rotr(early, 7) ^ std::rotr(early, 18) ^ early >> 3) +
                       words[index - 7] + (std::rotr(late, 17) ^ std::rotr(late, 19) ^ late >> 10);
    }
    auto [a, b, c, d, e, f, g, h] = state;
    for (std::size_t round = 0; round < words.size(); ++round) {
        const std::uint32_t first = h + (std::rotr(e, 6) ^ std::rotr(e, 11) ^ std::rotr(e, 25)) + ((e & f) ^ (~e & g)) +
                                    roundConstants[round] + words[round];
        const std::uint32_t second =
            (std::rotr(a, 2) ^ std::rotr(a, 13) ^ std::rotr(a, 22)) + ((a & b) ^ (a & c) ^ (b & c));
        h = g;
        g = f;
        f = e;
        e = d + first;
        d = c;
        c = b;
        b = a;
        a = first + second;
    }
    const std::array<std::uint32_t, 8> added = {a, b, c, d, e, f, g, h};
    for (std::size_t index = 0; index < state.size(); ++index)
        state[index] += added[index];
}

}
