#pragma once
// What a dictionary is made of: its languages, and a text in all of them. Plain values.

#include "base/KelText.h"

#include <vector>

namespace tarvin {

// A language besides English, which is the base.
struct DictionaryLanguage {
    KelText folder;
    std::int32_t lcid = 0; // as Windows numbers the locales
    std::int32_t codePage = 0;
    KelText name;

    bool operator==(const DictionaryLanguage&) const = default;
};

struct TextEntry {
    std::int32_t id = 0;
    KelText phrase; // English
    // By language, in the order of the dictionary's languages. Empty or not there: the phrase stands for it.
    std::vector<KelText> translations = {};
    KelText textPosition = u"TXTPOS_VOID"; // where on a window the text belongs, as a symbol; this one: nowhere
    KelText comment = {};

    bool operator==(const TextEntry&) const = default;
};

struct DictionaryContent {
    std::vector<DictionaryLanguage> languages;
    std::vector<TextEntry> entries;

    bool operator==(const DictionaryContent&) const = default;
};

// The text ids that a dictionary may give a text.
constexpr std::int32_t highestTextId = 999'999;

}
