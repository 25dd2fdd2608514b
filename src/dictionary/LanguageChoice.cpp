#include "dictionary/LanguageChoice.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr KelTextView languageSwitch = u"/l=";

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t';
}

template <class Matches>
std::int32_t FirstLanguage(const std::vector<DictionaryLanguage>& languages, Matches&& matches) {
    const auto found = std::find_if(languages.begin(), languages.end(), matches);
    return found == languages.end() ? languageUnknown : static_cast<std::int32_t>(found - languages.begin());
}

}

std::optional<LanguageSwitch> FindLanguageSwitch(KelTextView commandLine) {
    for (std::size_t begin = 0; begin + languageSwitch.size() <= commandLine.size(); ++begin) {
        // Within a word the same characters are part of a machine's name.
        const bool beginsWord = begin == 0 || IsBlank(commandLine[begin - 1]);
        if (!beginsWord || !EqualIgnoringCase(commandLine.substr(begin, languageSwitch.size()), languageSwitch))
            continue;
        KelText name;
        bool isQuoted = false;
        std::size_t end = begin + languageSwitch.size();
        for (; end < commandLine.size() && (isQuoted || !IsBlank(commandLine[end])); ++end) {
            // As on every command line, quotes may begin and end anywhere in a word.
            if (commandLine[end] == u'"')
                isQuoted = !isQuoted;
            else
                name.push_back(commandLine[end]);
        }
        return LanguageSwitch{begin, end, KelText(Trimmed(name))};
    }
    return std::nullopt;
}

std::int32_t ChooseLanguage(const std::vector<DictionaryLanguage>& languages, KelTextView name) {
    if (name == u"all")
        return languageAll;
    if (name == u"English")
        return languageNone;
    if (name.empty())
        return languageUnknown;
    // A "#" without a number may still be the start of a name.
    if (name.front() == u'#') {
        if (const auto place = LeadingNumber(name.substr(1))) {
            const bool isThere = *place >= 1 && static_cast<std::size_t>(*place) <= languages.size();
            return isThere ? *place - 1 : languageUnknown;
        }
    }
    // A whole name goes before the start of one, or a short name could never be chosen.
    constexpr KelText DictionaryLanguage::*namings[] = {&DictionaryLanguage::name, &DictionaryLanguage::folder};
    for (const auto naming : namings) {
        std::int32_t language = FirstLanguage(languages, [&](const auto& each) { return each.*naming == name; });
        if (language == languageUnknown)
            language = FirstLanguage(languages, [&](const auto& each) { return (each.*naming).starts_with(name); });
        if (language != languageUnknown)
            return language;
    }
    return languageUnknown;
}

}
