#pragma once
// Message boxes as values, and what a program without a display answers to them. Knows nothing of windows.

#include "framework/KelText.h"

namespace tarvin {

// Style flags of a message box, as the Windows message box numbers them.
enum MessageStyle : unsigned {
    okOnly = 0,
    okCancel = 1,
    yesNoCancel = 3,
    yesNo = 4,
    iconExclamation = 0x30,
    iconInformation = 0x40,
    defaultButton2 = 0x100,
    defaultButton3 = 0x200,
};

struct MessageBoxText {
    KelText text;
    KelText caption;
    unsigned style = okOnly;
};

// An answer as the Windows message box numbers it (1 OK, 2 cancel, 6 yes, 7 no), with the name of the button.
struct AutomaticAnswer {
    int answer;
    const char16_t* note;
};

// The answer when nobody is there to give one.
AutomaticAnswer AnswerUnattended(unsigned style);

// The one-line trace of a box that was not shown: "caption: text (note)", line ends within the text as " - ".
KelText UnattendedNote(const MessageBoxText& box);

}
