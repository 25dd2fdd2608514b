// Feeds any bytes to the dictionary's reader and to the loading of texts.

#include "dictionary/DictionaryFile.h"
#include "dictionary/PackedBytes.h"
#include "dictionary/TextHolder.h"

#include <cstdlib>
#include <fstream>

#include <unistd.h>

using namespace tarvin;

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// A fuzzer does not find the right checksum, so the header is made here. The first byte chooses it: 'b' for a plain
// file, 'd' for a compressed one, whose size the next three bytes give. Any other byte gives no header.
std::string FileBytes(std::string_view input) {
    ObjectReader reader(input);
    const char form = static_cast<char>(reader.Byte());
    ObjectWriter file;
    if (form == 'b') {
        file.Bytes("TarvinDL diction");
        file.Number(1);
        file.Number(Checksum(reader.Rest()));
    } else if (form == 'd') {
        file.Bytes("TarvinDL packed\n");
        file.Number(1);
        file.Number(reader.Unit() + (std::uint32_t{reader.Byte()} << 16));
        file.Number(Checksum(reader.Rest()));
    }
    file.Bytes(reader.Rest());
    return file.Written();
}

// True if the bytes are a dictionary. Its content must then say exactly what the bytes say.
bool ReadsRight(const std::string& bytes) {
    DictionaryReader reader;
    if (!reader.Open(bytes)) {
        Require(ReadContent(reader) == DictionaryContent());
        return false;
    }
    const Result<std::string> plain = IsPacked(bytes) ? Unpack(bytes, maximumDictionarySize) : bytes;
    Require(static_cast<bool>(plain));
    const std::string written = EncodeDictionary(ReadContent(reader));
    Require(reader.FurtherObjectCount() > 0 ? written.size() < plain->size() : written == *plain);
    return true;
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const auto path = std::filesystem::temp_directory_path() / ("fuzz-" + std::to_string(::getpid()) + ".ary");
    const std::string bytes = FileBytes({reinterpret_cast<const char*>(data), size});
    const bool isRight = ReadsRight(bytes);
    std::ofstream(path, std::ios::binary) << bytes;
    for (const KelText language : {u"#1", u"all"}) {
        TextHolder holder;
        Require(static_cast<bool>(holder.Load({.fileName = path, .defaultLanguage = language})) == isRight);
        for (const std::int32_t id : {-1, 0, 48, highestTextId, highestTextId + 1})
            Require(holder.Text(id) != nullptr);
        Require(isRight || holder.Memory().poolCapacity == 0);
    }
    std::filesystem::remove(path);
    return 0;
}
