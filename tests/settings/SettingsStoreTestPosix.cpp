#include "harness/TemporaryFolder.h"
#include "settings/SettingsStore.h"

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
namespace fs = std::filesystem;

TEST_CASE("SettingsStore: a damaged file that a link leads to keeps its content") {
    const TemporaryFolder folder;
    fs::create_directory(folder / "shared");
    folder.WriteFile("shared/laser.ini", "no settings");
    fs::create_symlink("shared/laser.ini", folder / "LASER.INI");
    DownloadSettings settings;
    settings.port = u"COM1";
    SettingsStore store(folder.Path(), u"LASER", u"");
    for (int save = 0; save < 2; ++save) {
        REQUIRE(store.SaveSettings(settings));
        CHECK(folder.ReadFile("LASER.INI.bad") == "no settings");
        CHECK(fs::is_regular_file(fs::symlink_status(folder / "LASER.INI.bad")));
        CHECK(fs::is_symlink(folder / "LASER.INI"));
        CHECK(folder.ReadFile("shared/laser.ini") == EncodeRecord(settings));
    }
}

TEST_CASE("SettingsStore: a link that leads nowhere is told and stays") {
    const TemporaryFolder folder;
    fs::create_symlink("away/laser.ini", folder / "LASER.INI");
    SettingsStore store(folder.Path(), u"LASER", u"");
    CHECK(store.Load({}).isRefused);
    CHECK_FALSE(store.SaveSettings({}));
    CHECK(fs::is_symlink(folder / "LASER.INI"));
}
