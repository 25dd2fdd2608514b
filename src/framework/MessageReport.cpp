#include "framework/MessageReport.h"

namespace tarvin {

AutomaticAnswer AnswerUnattended(unsigned style) {
    constexpr AutomaticAnswer ok = {1, u"Ok"};
    constexpr AutomaticAnswer cancel = {2, u"Cancel"};
    constexpr AutomaticAnswer yes = {6, u"Yes"};
    constexpr AutomaticAnswer no = {7, u"No"};
    const bool hasThreeButtons = (style & 3) == 3;
    const bool secondIsDefault = (style & defaultButton2) != 0;
    if ((style & yesNo) == 0 && !hasThreeButtons)
        return (style & okCancel) != 0 && secondIsDefault ? cancel : ok;
    if (hasThreeButtons && (style & defaultButton3) != 0)
        return cancel;
    return secondIsDefault ? no : yes;
}

KelText UnattendedNote(const MessageBoxText& box) {
    KelText line = box.caption + u": ";
    for (const char16_t unit : box.text) {
        if (unit == u'\n')
            line += u" - ";
        else if (unit != u'\r')
            line += unit;
    }
    return line + u" (" + AnswerUnattended(box.style).note + u")";
}

}
