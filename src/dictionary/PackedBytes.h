#pragma once
// The compressed form of a file. Its first bytes tell it from a plain file. Any thread.

#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarvin {

// True if the bytes begin like the compressed form. The rest may still be damaged.
bool IsPacked(std::string_view fileBytes);

// Equal content gives equal bytes. Requires fewer than 2^32 bytes.
std::string Pack(std::string_view content);

// The content. Fails if any byte is damaged or missing, and if the content is longer than `maximum`. Never allocates
// much more than `maximum`.
Result<std::string> Unpack(std::string_view fileBytes, std::size_t maximum);

// The CRC-32 of the bytes, by which a reader finds damage.
std::uint32_t Checksum(std::string_view bytes);

}
