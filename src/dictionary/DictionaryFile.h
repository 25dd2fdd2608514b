#pragma once
// A dictionary as bytes: the form of diction.ary, which docs/dictionary.md describes byte by byte. Any thread, one at a
// time for each object.

#include "base/Result.h"
#include "dictionary/DictionaryContent.h"
#include "files/ObjectStream.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

// The largest file, and the most that a compressed file may expand to, in bytes.
constexpr std::size_t maximumDictionarySize = 32 * 1024 * 1024;
constexpr std::uint32_t maximumLanguageCount = 255;
constexpr std::uint32_t maximumEntryCount = highestTextId + 1;

// Reads a dictionary entry by entry, so that the caller keeps only the texts that it wants.
class DictionaryReader {
public:
    // An entry as it is in the file, with texts in UTF-8. Valid until the next Open and as long as the reader.
    struct Entry {
        std::int32_t id = 0;
        std::string_view phrase;
        std::vector<std::string_view> translations; // at most one for each language
        std::string_view textPosition;
        std::string_view comment;
    };

    DictionaryReader() : entries({}) {}
    DictionaryReader(const DictionaryReader&) = delete;
    DictionaryReader& operator=(const DictionaryReader&) = delete;

    // Takes the bytes of a file, plain or compressed, and checks all of them. After a failure the reader is empty. The
    // reason is the end of a sentence that starts with the file's name.
    Result<> Open(std::string fileBytes);

    const std::vector<DictionaryLanguage>& Languages() const { return languages; }
    std::uint32_t EntryCount() const { return entryCount; }
    // Objects after the entries, of kinds that this program does not know. It skips them.
    std::uint32_t FurtherObjectCount() const { return furtherObjectCount; }

    // Gives the next entry. False after the last one; the next call starts again with the first.
    bool Next(Entry& entry);

private:
    Result<> Check();
    void Clear();
    void ReadEntry(ObjectReader& reader, Entry& entry) const;

    std::string content;
    std::vector<DictionaryLanguage> languages;
    std::uint32_t entryCount = 0;
    std::uint32_t furtherObjectCount = 0;
    std::uint32_t position = 0;
    std::string_view entryBytes;
    ObjectReader entries;
};

// The whole content of an open reader, independent of it.
DictionaryContent ReadContent(DictionaryReader& reader);

// The plain form, which may be longer than maximumDictionarySize.
std::string EncodeDictionary(const DictionaryContent& content);

}
