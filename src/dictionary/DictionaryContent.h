#pragma once
// The content of a dictionary as plain values: its languages, and texts in all of them.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// A language besides English, the base language.
struct DictionaryLanguage {
    KelText folder;
    std::int32_t lcid = 0; // the locale's number on Windows
    std::int32_t codePage = 0;
    KelText name;

    bool operator==(const DictionaryLanguage&) const = default;
};

struct TextEntry {
    std::int32_t id = 0;
    KelText phrase; // English
    // One for each language, in the order of the dictionary's languages. The phrase replaces an empty or missing one.
    std::vector<KelText> translations = {};
    KelText textPosition = u"TXTPOS_VOID"; // the text's place in a window, as a symbol; this one means no place
    KelText comment = {};

    bool operator==(const TextEntry&) const = default;
};

struct DictionaryContent {
    std::vector<DictionaryLanguage> languages;
    std::vector<TextEntry> entries;

    bool operator==(const DictionaryContent&) const = default;
};

// Text ids range from 0 to this one.
constexpr std::int32_t highestTextId = 999'999;

}
