#include "framework/MessageReport.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("a box that nobody sees answers itself by its buttons and its default") {
    struct Case {
        unsigned style;
        int answer;
    };
    const Case cases[] = {
        {okOnly, 1},
        {okOnly | iconExclamation | defaultButton2, 1},
        {okCancel, 1},
        {okCancel | defaultButton2, 2},
        {yesNo, 6},
        {yesNo | defaultButton2, 7},
        {yesNoCancel, 6},
        {yesNoCancel | defaultButton2, 7},
        {yesNoCancel | defaultButton3, 2},
    };
    for (const Case& each : cases) {
        CAPTURE(each.style);
        CHECK(AnswerUnattended(each.style).answer == each.answer);
    }
    CHECK(UnattendedNote({u"COM1\nNo such device", u"Open Comm", iconInformation}) ==
          u"Open Comm: COM1 - No such device (Ok)");
}
