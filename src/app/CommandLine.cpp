#include "app/CommandLine.h"

namespace tarvin {

namespace {

constexpr KelTextView languageSwitch = u"/l=";

bool IsBlank(char16_t unit) {
    return unit == u' ' || unit == u'\t';
}

std::size_t FindSwitch(KelTextView text) {
    for (std::size_t position = 0; position + languageSwitch.size() <= text.size(); ++position) {
        const bool startsWord = position == 0 || IsBlank(text[position - 1]);
        if (startsWord && EqualIgnoringCase(text.substr(position, languageSwitch.size()), languageSwitch))
            return position;
    }
    return KelTextView::npos;
}

}

CommandLine ParseCommandLine(KelTextView text) {
    CommandLine line;
    const std::size_t start = FindSwitch(text);
    if (start == KelTextView::npos) {
        line.machineName = Trimmed(text);
        return line;
    }
    std::size_t end = start + languageSwitch.size();
    while (end < text.size() && !IsBlank(text[end]))
        ++end;
    line.language = text.substr(start + languageSwitch.size(), end - start - languageSwitch.size());
    const KelTextView before = Trimmed(text.substr(0, start));
    const KelTextView after = Trimmed(text.substr(end));
    line.machineName = before;
    if (!before.empty() && !after.empty())
        line.machineName += u' ';
    line.machineName += after;
    return line;
}

}
