// The dictionary's reader and the loading of texts, on any bytes.

#include "dictionary/DictionaryFile.h"
#include "dictionary/TextHolder.h"
#include "files/PackedBytes.h"

#include <cstdlib>
#include <fstream>

#include <unistd.h>

using namespace tarvin;

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// No fuzzer finds a checksum. What the first byte says is put in front of the rest: 'b' the header of a plain file, 'd'
// that of a compressed one, whose size the next three bytes give; anything else nothing.
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

// What is read says exactly what the file says, or nothing is read.
bool ReadsRight(const std::string& bytes) {
    DictionaryReader reader(bytes);
    DictionaryContent content;
    if (!ReadContent(reader, content)) {
        Require(content == DictionaryContent());
        return false;
    }
    const auto plain = IsPacked(bytes) ? Unpack(bytes, maximumDictionarySize) : bytes;
    Require(plain.has_value());
    const std::string written = EncodeDictionary(content);
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
