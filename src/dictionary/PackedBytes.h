#pragma once
// The compressed form in which any file of ours may stand on the disk, told from a plain one by its first bytes. Knows
// nothing of what is in it. Any thread.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

bool IsPacked(std::string_view fileBytes);

// The same bytes give the same result.
std::string Pack(std::string_view content);

// The content; none if the bytes are damaged in any way or the content would be longer than `maximum`.
std::optional<std::string> Unpack(std::string_view fileBytes, std::size_t maximum);

// Of all bytes; tells whether they are the ones that were written.
std::uint32_t Checksum(std::string_view bytes);

}
