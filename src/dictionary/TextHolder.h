#pragma once
// The texts of the program by number, in the language of the user. Knows nothing of who shows them.
// Loaded by one thread while no other looks; lookups come from any thread, take constant time and allocate nothing.

#include "base/Result.h"
#include "dictionary/LanguageChoice.h"

namespace tarvin {

class DictionaryReader;

// What to load, and how.
struct DictionaryRequest {
    // One without a folder is in the program folder.
    std::filesystem::path fileName = "diction.ary";
    std::filesystem::path programFolder = {};
    // May hold the switch "/l=", which goes before the default.
    KelText commandLine = {};
    KelText defaultLanguage = {};
    // An index among the file's languages, or one of the values in LanguageChoice.h.
    std::int32_t language = languageByName;
};

class TextHolder {
public:
    // Replaces everything that is loaded. If the file cannot be read or is not whole, nothing is loaded, and the reason
    // names the file.
    Result<> Load(const DictionaryRequest& request);

    // The text, or the built-in English one, or the empty text.
    const char16_t* Text(std::int32_t id) const noexcept;
    // The loaded text, or null.
    const char16_t* TextOrNull(std::int32_t id) const noexcept;
    // The loaded text that a reference such as "^66" means. The empty text, or null, for one that means none and for
    // what is no reference.
    const char16_t* TextByReference(KelTextView reference) const noexcept;
    const char16_t* TextByReferenceOrNull(KelTextView reference) const noexcept;

    // The first text for an id wins. False, with nothing changed, for a later one and for an id out of range (0 to
    // highestTextId). What follows a zero is left out.
    bool Add(KelTextView text, std::int32_t id);

    // Absolute path of the file of the last load, whether it succeeded or not.
    const std::filesystem::path& DictionaryFile() const { return dictionaryFile; }
    // As it was asked for.
    const KelText& LanguageName() const { return languageName; }
    std::int32_t Language() const { return language; }
    // What the dictionary says about itself: empty without one.
    const KelText& LanguageNote() const { return languageNote; }
    // Only if loaded with languageAll, and then instead of texts.
    const std::vector<TextEntry>& Entries() const { return entries; }
    // Entries of the last load whose ids are out of range.
    std::size_t SkippedEntryCount() const { return skippedEntryCount; }

    // In code units and in slots.
    struct MemoryUse {
        std::size_t poolUsed;
        std::size_t poolCapacity;
        std::size_t indexLength;
        std::size_t indexCapacity;
    };
    MemoryUse Memory() const;

private:
    void Clear();
    bool Take(DictionaryReader& reader);
    void AddChosenTexts(DictionaryReader& reader);
    void ReserveIndex(std::int32_t id);
    void ReservePool(std::size_t unitCount);

    std::vector<char16_t> pool;       // each text with its zero
    std::vector<std::uint64_t> index; // by id: 1 + where in the pool the text begins, or 0
    std::filesystem::path dictionaryFile;
    KelText languageName;
    std::int32_t language = languageNone;
    KelText languageNote;
    std::vector<TextEntry> entries;
    std::size_t skippedEntryCount = 0;
};

// The dictionary of the process.
TextHolder& Dictionary();

}
