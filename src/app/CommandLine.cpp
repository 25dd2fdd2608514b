#include "app/CommandLine.h"

#include "dictionary/LanguageChoice.h"

namespace tarvin {

namespace {

KelText Quoted(const KelText& word) {
    constexpr std::size_t switchLength = 3;
    const bool isLanguage = EqualIgnoringCase(KelTextView(word).substr(0, switchLength), u"/l=");
    if (!isLanguage || word.find(u' ') == KelText::npos || word.find(u'"') != KelText::npos)
        return word;
    return word.substr(0, switchLength) + u'"' + word.substr(switchLength) + u'"';
}

}

KelText JoinWords(const std::vector<KelText>& words) {
    KelText text;
    for (const KelText& word : words) {
        if (&word != &words.front())
            text += u' ';
        text += Quoted(word);
    }
    return text;
}

KelText MachineNameIn(KelTextView commandLine) {
    const auto language = FindLanguageSwitch(commandLine);
    if (!language)
        return KelText(Trimmed(commandLine));
    const KelTextView before = Trimmed(commandLine.substr(0, language->begin));
    const KelTextView after = Trimmed(commandLine.substr(language->end));
    KelText name(before);
    if (!before.empty() && !after.empty())
        name += u' ';
    return name += after;
}

}
