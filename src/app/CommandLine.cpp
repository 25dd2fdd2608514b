#include "app/CommandLine.h"

#include "framework/LanguageChoice.h"

namespace tarvin {

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
