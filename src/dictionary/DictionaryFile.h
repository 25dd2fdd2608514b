#pragma once
// A dictionary as bytes, the form of diction.ary (docs/dictionary.md has it byte by byte). Knows nothing of which
// language is wanted. Any thread, each object by one at a time.

#include "dictionary/TextEntry.h"
#include "files/ObjectStream.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

// Longer is neither a file nor what a compressed one expands to.
constexpr std::size_t maximumDictionarySize = 32 * 1024 * 1024;
constexpr std::uint32_t maximumLanguageCount = 255;
constexpr std::uint32_t maximumEntryCount = highestTextId + 1;

// Reads a dictionary entry by entry, so that nobody has to hold texts that are not wanted. All of it is checked before
// the first entry is handed out: there is no such thing as half a dictionary.
class DictionaryReader {
public:
    // An entry as it stands in the file, its texts in UTF-8. Valid as long as the reader.
    struct Entry {
        std::int32_t id = 0;
        std::string_view phrase;
        std::vector<std::string_view> translations; // never more than there are languages
        std::string_view textPosition;
        std::string_view comment;
    };

    // Plain or compressed.
    explicit DictionaryReader(std::string fileBytes);
    DictionaryReader(const DictionaryReader&) = delete;
    DictionaryReader& operator=(const DictionaryReader&) = delete;

    // What is wrong with it, as the end of a sentence; empty if nothing is. With a fault there are no entries.
    std::string_view Fault() const { return fault; }
    const std::vector<DictionaryLanguage>& Languages() const { return languages; }
    std::uint32_t EntryCount() const { return entryCount; }
    // Objects behind the entries that this program does not know. They are passed over.
    std::uint32_t FurtherObjectCount() const { return furtherObjectCount; }

    // False behind the last entry; the next call gives the first one again.
    bool Next(Entry& entry);

private:
    void Read();
    void ReadEntry(ObjectReader& reader, Entry& entry) const;

    std::string content;
    std::string_view fault;
    std::vector<DictionaryLanguage> languages;
    std::uint32_t entryCount = 0;
    std::uint32_t furtherObjectCount = 0;
    std::uint32_t position = 0;
    std::string_view entryBytes;
    ObjectReader entries;
};

// The whole dictionary with its texts taken out of the file. False if it has a fault.
bool ReadContent(DictionaryReader& reader, DictionaryContent& content);

// In the plain form, which may be longer than can be read. Texts must be without zeros.
std::string EncodeDictionary(const DictionaryContent& content);

}
