#include "files/Installation.h"

#include "harness/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

TEST_CASE("FindInstallation: the first candidate with a readable KEL.INI is taken, unless the user has chosen one") {
    const TemporaryFolder folder;
    for (const char* name : {"user", "system", "empty", "odd/KEL.INI"})
        std::filesystem::create_directories(folder / name);
    folder.WriteFile("user/KEL.INI", "");
    folder.WriteFile("system/KEL.INI", "");
    const auto missing = folder / "missing";
    const auto empty = folder / "empty";
    const auto odd = folder / "odd";
    const auto user = folder / "user";
    const auto system = folder / "system";
    struct Case {
        InstallationCandidates candidates;
        std::optional<std::filesystem::path> installation;
    };
    const Case cases[] = {
        {{std::nullopt, {missing, empty, odd, user, system}}, user},
        {{std::nullopt, {empty, system, user}}, system},
        {{system, {user}}, system},
        {{missing, {user}}, std::nullopt},
        {{odd, {user}}, odd},
        {{std::nullopt, {empty, odd}}, odd},
        {{std::nullopt, {empty, missing}}, std::nullopt},
        {{std::nullopt, {}}, std::nullopt},
    };
    for (const Case& each : cases) {
        const auto found = FindInstallation(each.candidates);
        CHECK((found ? std::optional(*found) : std::nullopt) == each.installation);
    }
    const auto found = FindInstallation({std::filesystem::proximate(user), {}});
    REQUIRE(found);
    CHECK(found->is_absolute());
    CHECK(std::filesystem::equivalent(*found, user));
}

TEST_CASE("Installation: folders in KEL.INI are below it, unless they are full paths") {
    const TemporaryFolder folder;
    const auto full = (folder / "elsewhere").generic_string() + '\\' + std::string(100, 'x');
    struct Case {
        std::string content;
        std::filesystem::path ncFiles;
    };
    const Case cases[] = {
        {"[Program Paths]\n", folder / "NC Files"},
        {"[PROGRAM PATHS]\nNC Files=\n", folder / "NC Files"},
        {"[PROGRAM PATHS]\nNC Files=Parts\\Laser\n", folder / "Parts" / "Laser"},
        {"[PROGRAM PATHS]\nnc files=\"Parts/Laser\"\n", folder / "Parts" / "Laser"},
        {"[PROGRAM PATHS]\nNC Files=" + full, full},
    };
    for (const Case& each : cases) {
        CAPTURE(each.content);
        folder.WriteFile("KEL.INI", each.content);
        const auto installation = Installation::Read(folder.Path());
        REQUIRE(installation);
        CHECK(installation->Folder() == folder.Path());
        CHECK(installation->NcFilesFolder() == each.ncFiles);
    }
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n[Linked Folders]\n1=Parts\\Laser\n2=\n1=" + full);
    const auto linked = Installation::Read(folder.Path());
    REQUIRE(linked);
    CHECK(linked->LinkedFolders() == std::vector<std::filesystem::path>{folder / "Parts" / "Laser", full});
    std::filesystem::create_directories(folder / "odd/KEL.INI");
    CHECK_FALSE(Installation::Read(folder / "odd"));
    CHECK_FALSE(Installation::Read(folder / "missing"));
    folder.WriteFile("KEL.INI", "[PORTS]\nNC Files=Parts\n");
    CHECK_FALSE(Installation::Read(folder.Path()));
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n" + std::string(1024 * 1024, '\n'));
    CHECK_FALSE(Installation::Read(folder.Path()));
}
