#pragma once
// A text of the window with its number in the dictionary. Wherever a text is expected, it gives the words in the user's
// language. Any thread, after the translator is set.

#include "base/KelText.h"

namespace tarvin {

struct NumberedText {
    std::int32_t id;
    const char16_t* english;

    // The translator's text if it has one that is not empty, else the English text. The view stays valid as long as
    // the translator's texts.
    KelTextView Words() const;
    // Implicit: a numbered text stands wherever a plain one does.
    operator KelTextView() const { return Words(); }
    operator KelText() const { return KelText(Words()); }
};

inline KelText operator+(const KelText& left, const NumberedText& right) {
    return left + KelText(right);
}

inline KelText operator+(const NumberedText& left, const KelText& right) {
    return KelText(left) + right;
}

// Gives the text with this number in the user's language; null without one.
using Translator = const char16_t* (*)(std::int32_t id) noexcept;

// Until the first call, and after one with null, all texts are English. The window program calls this once it has
// loaded the dictionary and before other threads run: a program without a window speaks English in every language.
void SetTranslator(Translator translator);

}
