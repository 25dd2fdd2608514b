#pragma once
// The two ways to tell a user something, as plain values: a message box, and a report for the debug log. Any thread.

#include "messages/MessageButtons.h"

#include <optional>
#include <vector>

namespace tarvin {

struct MessageBoxText {
    KelText text;
    KelText caption;
    unsigned style = okOnly; // flags of MessageStyle
    // With a number, the box has a check box by which the user suppresses all boxes of this number.
    std::optional<std::int32_t> dontShowAgainId = {};

    // Said around the text, if not empty: what has happened in plain words, and what to do. See WithAdvice.
    KelText headline = {};
    KelText advice = {};
    // The box is about an outage of the port, and closes by itself when the port works again.
    bool endsWithOutage = false;

    // Whether a user cannot tell the boxes apart.
    bool LooksLike(const MessageBoxText& other) const { return caption == other.caption && text == other.text; }
};

enum class ReportLevel : std::int32_t { Warning, Normal, Fatal, Query, Information };

struct MessageReport {
    // A level outside ReportLevel is reported as its number.
    std::int32_t level = 0;
    KelText info;
    KelText message;
    // May be empty, and may have several lines.
    KelText details;
    // The code of the message. Reporting the message returns it.
    std::int32_t answer = 0;
};

// The texts that the debug log gets for a report, in order. A second rule ends the details, and is left out without
// details.
std::vector<KelText> ReportTexts(const MessageReport& report);

}
