#include "files/PackedBytes.h"

#include "files/ObjectStream.h"

#include <zlib.h>

namespace tarvin {

namespace {

constexpr std::string_view headerText = "TarvinDL packed\n";
constexpr std::uint32_t formatVersion = 1;
// A stream without zlib's own header and checksum: there is one checksum for all of it in front.
constexpr int bareStream = -MAX_WBITS;
// Each bit of a stream gives 129 bytes at most.
constexpr std::size_t mostExpansion = 8 * 129;

Bytef* In(std::string_view bytes) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

Bytef* Out(std::string& bytes) {
    return reinterpret_cast<Bytef*>(bytes.data());
}

// The expanded stream if it gives exactly `size` bytes and ends with its last byte.
std::optional<std::string> Inflate(std::string_view stream, std::size_t size) {
    // What no stream of this length can give is not given room.
    if (size / mostExpansion > stream.size())
        return std::nullopt;
    z_stream state = {};
    if (::inflateInit2(&state, bareStream) != Z_OK)
        return std::nullopt;
    // With one byte more, so that a stream that goes on is told from one that ends.
    std::string content(size + 1, '\0');
    state.next_in = In(stream);
    state.avail_in = static_cast<uInt>(stream.size());
    state.next_out = Out(content);
    state.avail_out = static_cast<uInt>(content.size());
    const int result = ::inflate(&state, Z_FINISH);
    const bool isExact = result == Z_STREAM_END && state.total_out == size && state.avail_in == 0;
    ::inflateEnd(&state);
    content.resize(size);
    return isExact ? std::optional(std::move(content)) : std::nullopt;
}

}

std::uint32_t Checksum(std::string_view bytes) {
    return static_cast<std::uint32_t>(::crc32_z(0, In(bytes), bytes.size()));
}

bool IsPacked(std::string_view fileBytes) {
    return fileBytes.starts_with(headerText);
}

std::string Pack(std::string_view content) {
    z_stream state = {};
    ::deflateInit2(&state, Z_BEST_COMPRESSION, Z_DEFLATED, bareStream, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
    std::string stream(::deflateBound(&state, static_cast<uLong>(content.size())), '\0');
    state.next_in = In(content);
    state.avail_in = static_cast<uInt>(content.size());
    state.next_out = Out(stream);
    state.avail_out = static_cast<uInt>(stream.size());
    // The room is enough by zlib's own reckoning, so that one call does it all.
    ::deflate(&state, Z_FINISH);
    stream.resize(state.total_out);
    ::deflateEnd(&state);
    ObjectWriter writer;
    writer.Bytes(headerText);
    writer.Number(formatVersion);
    writer.Number(static_cast<std::uint32_t>(content.size()));
    writer.Number(Checksum(stream));
    writer.Bytes(stream);
    return writer.Written();
}

std::optional<std::string> Unpack(std::string_view fileBytes, std::size_t maximum) {
    ObjectReader reader(fileBytes);
    const bool isPacked = reader.Bytes(headerText.size()) == headerText && reader.Number() == formatVersion;
    const std::size_t size = reader.Number();
    const std::uint32_t checksum = reader.Number();
    const std::string_view stream = reader.Rest();
    if (!isPacked || reader.HasFailed() || size > maximum || checksum != Checksum(stream))
        return std::nullopt;
    return Inflate(stream, size);
}

}
