#pragma once
// The program's texts by number, in the user's language. One thread loads or adds texts while no other thread looks any
// up. After that any thread may look texts up: in constant time and without allocating memory.

#include "base/Result.h"
#include "dictionary/LanguageChoice.h"

namespace tarvin {

class DictionaryReader;

// The file and the language to load.
struct DictionaryRequest {
    // A name without a folder is a file in `programFolder`.
    std::filesystem::path fileName = "diction.ary";
    std::filesystem::path programFolder = {};
    // A switch "/l=" in it takes precedence over the default.
    KelText commandLine = {};
    KelText defaultLanguage = {};
    // The index of one of the file's languages, or one of the values in LanguageChoice.h.
    std::int32_t language = languageByName;
};

class TextHolder {
public:
    // Replaces all texts by those of the file. Fails if the file cannot be read or is damaged: then no texts are
    // loaded, and the reason names the file.
    Result<> Load(const DictionaryRequest& request);

    // The loaded text, else the built-in English one, else the empty text. Valid until the next Load or Add.
    const char16_t* Text(std::int32_t id) const noexcept;
    // The loaded text, else null.
    const char16_t* TextOrNull(std::int32_t id) const noexcept;
    // The loaded text for a reference such as "^66". If no text is loaded for it, or the text is no reference, the
    // first gives the empty text and the second null.
    const char16_t* TextByReference(KelTextView reference) const noexcept;
    const char16_t* TextByReferenceOrNull(KelTextView reference) const noexcept;

    // Adds the text up to its first zero. False, without a change, if the id has a text already or is not in the range
    // 0 to highestTextId.
    bool Add(KelTextView text, std::int32_t id);

    // The absolute path of the file of the last Load, also after a failure.
    const std::filesystem::path& DictionaryFile() const { return dictionaryFile; }
    // The name by which the last Load was asked for the language.
    const KelText& LanguageName() const { return languageName; }
    std::int32_t Language() const { return language; }
    // The languages of the file of the last Load, in its order; English, the base of all, is none of them. Empty after
    // a failure.
    const std::vector<DictionaryLanguage>& Languages() const { return languages; }
    // The dictionary's note about the language. Empty without a dictionary.
    const KelText& LanguageNote() const { return languageNote; }
    // All entries if the language is languageAll; then no texts are loaded. Else empty.
    const std::vector<TextEntry>& Entries() const { return entries; }
    // The number of entries that the last Load skipped because their ids are out of range.
    std::size_t SkippedEntryCount() const { return skippedEntryCount; }

    // The pool is counted in code units, the index in slots.
    struct MemoryUse {
        std::size_t poolUsed;
        std::size_t poolCapacity;
        std::size_t indexLength;
        std::size_t indexCapacity;
    };
    MemoryUse Memory() const;

private:
    void Clear();
    void Take(DictionaryReader& reader);
    void AddChosenTexts(DictionaryReader& reader);
    void ReserveIndex(std::int32_t id);
    void ReservePool(std::size_t unitCount);

    std::vector<char16_t> pool;       // each text with a zero after it
    std::vector<std::uint64_t> index; // by id: 1 + the text's place in the pool, or 0 without a text
    std::filesystem::path dictionaryFile;
    KelText languageName;
    std::int32_t language = languageNone;
    std::vector<DictionaryLanguage> languages;
    KelText languageNote;
    std::vector<TextEntry> entries;
    std::size_t skippedEntryCount = 0;
};

// The dictionary of this process.
TextHolder& Dictionary();

}
