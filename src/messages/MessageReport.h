#pragma once
// The two things that a user can be told, as values: a message box and a message report. Knows nothing of windows,
// files or who is told.

#include "base/KelText.h"

#include <optional>
#include <vector>

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
    // The number under which the user can have such boxes not shown any more.
    std::optional<std::int32_t> dontShowAgainId = {};
};

// An answer as the Windows message box numbers it (1 OK, 2 cancel, 6 yes, 7 no), and the dictionary's number of the
// name of that button.
struct AutomaticAnswer {
    int answer;
    std::int32_t noteTextId;
};

// The answer to a box that is not shown.
AutomaticAnswer AutomaticAnswerTo(unsigned style);

enum class ReportLevel : std::int32_t { Warning, Normal, Fatal, Query, Information };

struct MessageReport {
    // Other numbers than those of ReportLevel are allowed: they are reported as numbers.
    std::int32_t level = 0;
    KelText info;
    KelText message;
    // May be empty, and may have several lines.
    KelText details;
    // The message's code, and what reporting it returns.
    std::int32_t answer = 0;
};

// What the debug log gets, each a text of its own. Only details are followed by a second rule: they have no other end.
std::vector<KelText> ReportTexts(const MessageReport& report);

}
