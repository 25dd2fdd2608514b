#include "app/CommandLine.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("the whole command line is the machine's name, but for the language switch") {
    struct Case {
        KelText text;
        KelText machineName;
        std::optional<KelText> language;
    };
    const Case cases[] = {
        {u"", u"", {}},
        {u"  LASER 2  ", u"LASER 2", {}},
        {u"LASER2 /l=de", u"LASER2", u"de"},
        {u"/L=fr-FR", u"", u"fr-FR"},
        {u"BIG /l=it LASER", u"BIG LASER", u"it"},
        {u"A/l=B", u"A/l=B", {}},
        {u"LASER /l=", u"LASER", u""},
        {u"LASER --help", u"LASER --help", {}},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.text));
        const CommandLine line = ParseCommandLine(each.text);
        CHECK(line.machineName == each.machineName);
        CHECK(line.language == each.language);
    }
}
