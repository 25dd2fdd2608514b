#include "app/CommandLine.h"

#include "base/System.h"
#include "dictionary/LanguageChoice.h"

#include <algorithm>

namespace tarvin {

namespace {

constexpr KelTextView languageSwitch = u"/l=";

bool BeginsWithSwitch(KelTextView text) {
    return EqualIgnoringCase(text.substr(0, languageSwitch.size()), languageSwitch);
}

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t';
}

KelText Quoted(const KelText& word) {
    if (!BeginsWithSwitch(word) || word.find(u' ') == KelText::npos || word.find(u'"') != KelText::npos)
        return word;
    return word.substr(0, languageSwitch.size()) + u'"' + word.substr(languageSwitch.size()) + u'"';
}

// Windows takes all up to the second quote for the program's name, or up to the first blank if it is not quoted.
KelTextView WithoutProgramName(KelTextView typed) {
    const bool isQuoted = typed.starts_with(u'"');
    const std::size_t end = isQuoted ? typed.find(u'"', 1) : typed.find_first_of(u" \t");
    return end == KelTextView::npos ? KelTextView() : typed.substr(isQuoted ? end + 1 : end);
}

// The length of the word at the start of the text: it goes on to a blank outside quotes.
std::size_t WordLength(KelTextView text) {
    bool isQuoted = false;
    std::size_t end = 0;
    for (; end < text.size() && (isQuoted || !IsBlank(text[end])); ++end) {
        if (text[end] == u'"')
            isQuoted = !isQuoted;
    }
    return end;
}

// A language switch, in the form that FindLanguageSwitch reads. All of it may be quoted: "/l=Deutsch (Schweiz)".
KelText SwitchOf(KelTextView word) {
    if (!word.starts_with(u'"'))
        return KelText(word);
    word.remove_prefix(1);
    return KelText(word.substr(0, languageSwitch.size())) + u'"' + KelText(word.substr(languageSwitch.size()));
}

KelText WithoutQuotes(KelTextView word) {
    KelText text;
    for (std::size_t position = 0; position < word.size(); ++position) {
        const bool isEscaped = word.substr(position, 2) == u"\\\"";
        if (isEscaped)
            ++position;
        if (isEscaped || word[position] != u'"')
            text.push_back(word[position]);
    }
    return text;
}

}

KelText CommandLineOf(int argumentCount, const char* const* arguments) {
    const auto typed = TypedCommandLine();
    return typed ? TypedArguments(*typed) : JoinWords(ProgramArguments(argumentCount, arguments));
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

KelText TypedArguments(KelTextView typed) {
    KelText text;
    for (KelTextView rest = Trimmed(WithoutProgramName(typed)); !rest.empty();) {
        const KelTextView word = rest.substr(0, WordLength(rest));
        rest.remove_prefix(word.size());
        text += BeginsWithSwitch(word.substr(word.starts_with(u'"') ? 1 : 0)) ? SwitchOf(word) : WithoutQuotes(word);
        const std::size_t next = std::min(rest.find_first_not_of(u" \t"), rest.size());
        text += rest.substr(0, next);
        rest.remove_prefix(next);
    }
    return text;
}

KelText MachineNameIn(KelTextView commandLine) {
    const auto language = FindLanguageSwitch(commandLine);
    if (!language)
        return KelText(Trimmed(commandLine));
    // A switch begins a word: the character before it, if there is one, is a blank.
    const std::size_t begin = language->begin == 0 ? 0 : language->begin - 1;
    const KelText rest = KelText(commandLine.substr(0, begin)) + KelText(commandLine.substr(language->end));
    return KelText(Trimmed(rest));
}

}
