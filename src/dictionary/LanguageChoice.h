#pragma once
// Which language the user wants, and which of a dictionary's languages that is. Pure, any thread.

#include "dictionary/TextEntry.h"

#include <optional>

namespace tarvin {

// The base phrases.
constexpr std::int32_t languageNone = -1;
// To be chosen by its name.
constexpr std::int32_t languageUnknown = -2;
constexpr std::int32_t languageByName = -3;
// No language at all: the dictionary is kept whole, for editing.
constexpr std::int32_t languageAll = 0x7FFFFFFF;

// The switch "/l=NAME" in a command line. It begins a word and ends with the next blank that is not within double
// quotes.
struct LanguageSwitch {
    std::size_t begin;
    std::size_t end;
    KelText name; // without quotes, trimmed
};

std::optional<LanguageSwitch> FindLanguageSwitch(KelTextView commandLine);

// The index of the language that the name means, languageNone or languageAll; languageUnknown if it means none. Meant
// is "all", "English", "#" with a place counted from 1, a language's name, or the first language whose name begins so;
// failing that, a language's folder in the same way.
std::int32_t ChooseLanguage(const std::vector<DictionaryLanguage>& languages, KelTextView name);

}
