#include "app/CommandLine.h"

namespace tarvin {

namespace {

// The shell has taken the quotes off a language's name that holds blanks.
KelText Quoted(const KelText& word) {
    constexpr std::size_t switchLength = 3;
    const bool isLanguage = EqualIgnoringCase(KelTextView(word).substr(0, switchLength), u"/l=");
    if (!isLanguage || word.find(u' ') == KelText::npos || word.find(u'"') != KelText::npos)
        return word;
    return word.substr(0, switchLength) + u'"' + word.substr(switchLength) + u'"';
}

}

KelText CommandLineText(int argumentCount, const char* const* arguments) {
    KelText text;
    for (int index = 1; index < argumentCount; ++index) {
        if (index > 1)
            text += u' ';
        text += Quoted(FromUtf8(arguments[index]));
    }
    return text;
}

}
