#include "app/Program.h"

#include "harness/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("Program: the command line without its language switch is the machine, TARVIN without a name") {
    const TemporaryFolder folder;
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n");
    const auto paths = Installation::Read(folder.Path());
    REQUIRE(paths);
    struct Case {
        const char16_t* commandLine;
        const char16_t* machineName;
        const char* folder;
    };
    for (const Case& each : {Case{u"", u"TARVIN", "TARVIN"},
                             {u" /l=German ", u"TARVIN", "TARVIN"},
                             {u"LASER 2 /L=#1", u"LASER 2", "LASER 2"},
                             {u"CUT/2", u"CUT/2", "CUT_2"}}) {
        const Program program(*paths, each.commandLine);
        CHECK(program.MachineName() == each.machineName);
        CHECK(program.MachineFolder() == folder / each.folder);
    }
}

TEST_CASE("Program: a missing dictionary is no failure, and a damaged one is") {
    const TemporaryFolder folder;
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n");
    const Program program(*Installation::Read(folder.Path()), u"");
    CHECK(program.LoadDictionary());
    folder.WriteFile("diction.ary", "no dictionary");
    CHECK_FALSE(program.LoadDictionary());
}
