#include "app/CommandLine.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("CommandLine: all of it is the machine's name, except for the language switch") {
    struct Case {
        KelText text;
        KelText machineName;
    };
    const Case cases[] = {
        {u"", u""},
        {u"  LASER 2  ", u"LASER 2"},
        {u"LASER2 /l=de", u"LASER2"},
        {u"/L=fr-FR", u""},
        {u"BIG /l=\"Deutsch (Schweiz)\" LASER", u"BIG LASER"},
        {u"A/l=B", u"A/l=B"},
        {u"LASER /l=", u"LASER"},
        {u"LASER --help", u"LASER --help"},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.text));
        CHECK(MachineNameIn(each.text) == each.machineName);
    }
}
