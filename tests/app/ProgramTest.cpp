#include "app/Program.h"

#include "dictionary/DictionaryFile.h"
#include "dictionary/TextHolder.h"
#include "harness/TemporaryFolder.h"
#include "settings/SettingsStore.h"

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

TEST_CASE("Program: the switch goes before the setting of the language, and that before the system's") {
    const TemporaryFolder folder;
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n");
    folder.WriteFile("diction.ary",
                     EncodeDictionary({{{u"German", 1031, 1252, u"Deutsch"}, {u"French", 1036, 1252, u"Fran"}}, {}}));
    const auto languageOf = [&](const KelText& commandLine) {
        CHECK(Program(*Installation::Read(folder.Path()), commandLine).LoadDictionary(u"German"));
        return Dictionary().Language();
    };
    CHECK(languageOf(u"LASER") == 0);
    CHECK(languageOf(u"LASER /l=French") == 1);
    DownloadSettings settings;
    settings.language = u"English";
    REQUIRE(SettingsStore(folder.Path(), u"LASER", {}).SaveSettings(settings));
    CHECK(languageOf(u"LASER") == languageNone);
    CHECK(languageOf(u"LASER /l=French") == 1);
    CHECK(languageOf(u"PUNCH") == 0);
}
