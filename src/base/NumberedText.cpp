#include "base/NumberedText.h"

namespace tarvin {

namespace {

Translator currentTranslator = nullptr;

}

KelTextView NumberedText::Words() const {
    const char16_t* const words = currentTranslator != nullptr ? currentTranslator(id) : nullptr;
    return words != nullptr && *words != u'\0' ? words : english;
}

void SetTranslator(Translator translator) {
    currentTranslator = translator;
}

}
