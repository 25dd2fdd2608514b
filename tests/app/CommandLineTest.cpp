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
        {u"BIG  /l=de  LASER", u"BIG   LASER"},
        {u"LASER  2 /l=de", u"LASER  2"},
        {u"/l=de LASER", u"LASER"},
        {u"A/l=B", u"A/l=B"},
        {u"LASER /l=", u"LASER"},
        {u"LASER --help", u"LASER --help"},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.text));
        CHECK(MachineNameIn(each.text) == each.machineName);
    }
}

TEST_CASE("CommandLine: a typed line keeps its blanks and loses its quotes") {
    struct Case {
        KelText typed;
        KelText arguments;
        KelText machineName;
    };
    const Case cases[] = {
        {u"tarvindl.exe", u"", u""},
        {u"\"C:\\Program Files\\tarvindl.exe\"  LASER  2 ", u"LASER  2", u"LASER  2"},
        {u"tarvindl \"LASER  2\"", u"LASER  2", u"LASER  2"},
        {u"tarvindl \"LASER\"  \"2\"", u"LASER  2", u"LASER  2"},
        {u"tarvindl 2\\\" LASER", u"2\" LASER", u"2\" LASER"},
        {u"tarvindl \\LASER\\", u"\\LASER\\", u"\\LASER\\"},
        {u"tarvindl A  /l=\"Deutsch (Schweiz)\"", u"A  /l=\"Deutsch (Schweiz)\"", u"A"},
        {u"tarvindl \"/L=Deutsch (Schweiz)\" A  B", u"/L=\"Deutsch (Schweiz)\" A  B", u"A  B"},
        {u"\"tarvindl", u"", u""},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.typed));
        CHECK(ToUtf8(TypedArguments(each.typed)) == ToUtf8(each.arguments));
        CHECK(ToUtf8(MachineNameIn(TypedArguments(each.typed))) == ToUtf8(each.machineName));
    }
}
