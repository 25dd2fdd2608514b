#pragma once
// The buttons of message boxes: which ones a style has, which one is the default, and which one answers a box that no
// user sees. Any thread.

#include "base/Messages.h"

#include <cstddef>
#include <span>

namespace tarvin {

// Style flags of a message box, as the Windows message box numbers them. A style is one of the first six, perhaps with
// an icon and a default button.
enum MessageStyle : unsigned {
    okOnly = 0,
    okCancel = 1,
    abortRetryIgnore = 2,
    yesNoCancel = 3,
    yesNo = 4,
    retryCancel = 5,
    buttonMask = 0xF,
    iconError = 0x10,
    iconQuestion = 0x20,
    iconExclamation = 0x30,
    iconInformation = 0x40,
    iconMask = 0xF0,
    defaultButton2 = 0x100,
    defaultButton3 = 0x200,
};

struct MessageButton {
    int answer; // as the Windows message box numbers it
    NumberedText caption;
};

inline constexpr MessageButton okButton = {1, text::dictionary::ok};
inline constexpr MessageButton cancelButton = {2, text::dictionary::cancel};
inline constexpr MessageButton abortButton = {3, text::dictionary::abort};
inline constexpr MessageButton retryButton = {4, text::dictionary::retry};
inline constexpr MessageButton ignoreButton = {5, text::dictionary::ignore};
inline constexpr MessageButton yesButton = {6, text::dictionary::yes};
inline constexpr MessageButton noButton = {7, text::dictionary::no};

// From left to right. The last one is the answer of a box that is closed without a button.
std::span<const MessageButton> ButtonsOf(unsigned style);

// The button that Enter presses, as an index of ButtonsOf. The first one if the style's default button is missing.
std::size_t DefaultButtonOf(unsigned style);

// The button that answers a box which is not shown. Follows Windows programs without a user: it need not be the default
// button, nor a button of the box.
const MessageButton& AutomaticAnswerTo(unsigned style);

}
