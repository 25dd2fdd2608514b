#include "messages/MessageButtons.h"

namespace tarvin {

std::span<const MessageButton> ButtonsOf(unsigned style) {
    static constexpr MessageButton okCancelButtons[] = {okButton, cancelButton};
    static constexpr MessageButton abortRetryIgnoreButtons[] = {abortButton, retryButton, ignoreButton};
    static constexpr MessageButton yesNoCancelButtons[] = {yesButton, noButton, cancelButton};
    static constexpr MessageButton retryCancelButtons[] = {retryButton, cancelButton};
    switch (style & buttonMask) {
    case okCancel:
        return okCancelButtons;
    case abortRetryIgnore:
        return abortRetryIgnoreButtons;
    case yesNoCancel:
        return yesNoCancelButtons;
    case yesNo:
        return std::span(yesNoCancelButtons).first(2);
    case retryCancel:
        return retryCancelButtons;
    default:
        return {&okButton, 1};
    }
}

std::size_t DefaultButtonOf(unsigned style) {
    const std::size_t wanted = (style & defaultButton3) != 0 ? 2 : (style & defaultButton2) != 0 ? 1 : 0;
    return wanted < ButtonsOf(style).size() ? wanted : 0;
}

const MessageButton& AutomaticAnswerTo(unsigned style) {
    // The flags are looked at bit by bit, so that abortRetryIgnore counts as okOnly, and retryCancel as yesNo.
    const bool hasThreeButtons = (style & yesNoCancel) == yesNoCancel;
    const bool secondIsDefault = (style & defaultButton2) != 0;
    if ((style & yesNo) == 0 && !hasThreeButtons)
        return (style & okCancel) != 0 && secondIsDefault ? cancelButton : okButton;
    if (hasThreeButtons && (style & defaultButton3) != 0)
        return cancelButton;
    return secondIsDefault ? noButton : yesButton;
}

}
