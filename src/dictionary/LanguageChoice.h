#pragma once
// Finds the language that the user asks for, and its place among the languages of a dictionary. Any thread.

#include "dictionary/DictionaryContent.h"

#include <optional>

namespace tarvin {

// English, the base phrases.
constexpr std::int32_t languageNone = -1;
// Both let Load choose by the name; languageUnknown is also the answer for a name that fits no language.
constexpr std::int32_t languageUnknown = -2;
constexpr std::int32_t languageByName = -3;
// All languages: the whole dictionary, for editing.
constexpr std::int32_t languageAll = 0x7FFFFFFF;

// The switch "/l=NAME" in a command line. It begins a word and ends before the next blank outside double quotes.
struct LanguageSwitch {
    std::size_t begin;
    std::size_t end;
    KelText name; // trimmed and without quotes
};

// The first switch; none if the command line has none.
std::optional<LanguageSwitch> FindLanguageSwitch(KelTextView commandLine);

// The index of the named language, languageNone or languageAll; languageUnknown if the name fits no language. A name
// is, in this order: "all", "English", "#" with a place counted from 1, the name of a language or the start of one, the
// folder of a language or the start of one.
std::int32_t ChooseLanguage(const std::vector<DictionaryLanguage>& languages, KelTextView name);

}
