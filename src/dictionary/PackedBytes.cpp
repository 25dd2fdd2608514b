#include "dictionary/PackedBytes.h"

#include "files/ObjectStream.h"

#include <cassert>
#include <limits>
#include <utility>

#include <zlib.h>

namespace tarvin {

namespace {

constexpr std::string_view headerText = "TarvinDL packed\n";
constexpr std::uint32_t formatVersion = 1;
// A stream without zlib's own header and checksum: the file's header has a checksum of the whole stream.
constexpr int bareStream = -MAX_WBITS;
// The most bytes that one byte of a stream can expand to: at most 129 for each bit.
constexpr std::size_t mostExpansion = 8 * 129;

// zlib's interface takes input without const, but does not write to it.
Bytef* In(std::string_view bytes) {
    return reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
}

Bytef* Out(std::string& bytes) {
    return reinterpret_cast<Bytef*>(bytes.data());
}

const Error damaged = {u"is damaged or not whole"};

// Expands a stream that gives exactly `size` bytes and ends with its last byte.
Result<std::string> Inflate(std::string_view stream, std::size_t size) {
    // A short stream that claims a huge size is refused before the memory is allocated.
    if (size / mostExpansion > stream.size())
        return damaged;
    z_stream state = {};
    if (::inflateInit2(&state, bareStream) != Z_OK)
        return damaged;
    // One byte more than the size: a stream that goes on fills it.
    std::string content(size + 1, '\0');
    state.next_in = In(stream);
    state.avail_in = static_cast<uInt>(stream.size());
    state.next_out = Out(content);
    state.avail_out = static_cast<uInt>(content.size());
    const int result = ::inflate(&state, Z_FINISH);
    const bool isExact = result == Z_STREAM_END && state.total_out == size && state.avail_in == 0;
    ::inflateEnd(&state);
    content.resize(size);
    if (!isExact)
        return damaged;
    return content;
}

}

std::uint32_t Checksum(std::string_view bytes) {
    return static_cast<std::uint32_t>(::crc32_z(0, In(bytes), bytes.size()));
}

bool IsPacked(std::string_view fileBytes) {
    return fileBytes.starts_with(headerText);
}

std::string Pack(std::string_view content) {
    assert(content.size() <= std::numeric_limits<std::uint32_t>::max());
    z_stream state = {};
    ::deflateInit2(&state, Z_BEST_COMPRESSION, Z_DEFLATED, bareStream, MAX_MEM_LEVEL, Z_DEFAULT_STRATEGY);
    std::string stream(::deflateBound(&state, static_cast<uLong>(content.size())), '\0');
    state.next_in = In(content);
    state.avail_in = static_cast<uInt>(content.size());
    state.next_out = Out(stream);
    state.avail_out = static_cast<uInt>(stream.size());
    // deflateBound gives enough room for everything, so one call is enough.
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

Result<std::string> Unpack(std::string_view fileBytes, std::size_t maximum) {
    ObjectReader reader(fileBytes);
    const bool isPacked = reader.Bytes(headerText.size()) == headerText && reader.Number() == formatVersion;
    const std::size_t size = reader.Number();
    const std::uint32_t checksum = reader.Number();
    const std::string_view stream = reader.Rest();
    if (!isPacked || reader.HasFailed() || size > maximum || checksum != Checksum(stream))
        return damaged;
    return Inflate(stream, size);
}

}
