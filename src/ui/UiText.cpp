#include "ui/UiText.h"

namespace tarvin {

wxString ToWx(KelTextView text) {
    wxString result;
    result.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const char16_t unit = text[at];
        const bool isHigh = unit >= 0xD800 && unit < 0xDC00;
        const bool isPair = isHigh && at + 1 < text.size() && text[at + 1] >= 0xDC00 && text[at + 1] < 0xE000;
        if (isPair) {
            result += wxUniChar(0x10000u + ((unit & 0x3FFu) << 10) + (text[++at] & 0x3FFu));
        } else {
            // A lone surrogate stands for a byte that is no character; nobody can show it.
            result += wxUniChar(unit >= 0xD800 && unit < 0xE000 ? 0xFFFDu : unit);
        }
    }
    return result;
}

KelText FromWx(const wxString& text) {
    return FromUtf8(text.utf8_string());
}

wxString ToLabel(KelTextView text) {
    return wxControl::EscapeMnemonics(ToWx(text));
}

}
