#include "harness/TemporaryFolder.h"
#include "setup/InstallationFiles.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
namespace fs = std::filesystem;

TEST_CASE("InstallationFiles: root gives a folder to the group, and follows no link to another one") {
    const TemporaryFolder folder;
    for (const char* name : {"given", "other"}) {
        fs::create_directory(folder / name);
        fs::permissions(folder / name, fs::perms::owner_all);
    }
    fs::create_directory_symlink(folder / "other", folder / "link");
    GiveFolderToOwnerOf(folder.Path(), folder / "given");
    GiveFolderToOwnerOf(folder.Path(), folder / "link");
    // Only root may give: the files of another user stay as they are.
    const auto given = MayChangeSystem() ? fs::perms(02775) : fs::perms::owner_all;
    CHECK(fs::status(folder / "given").permissions() == given);
    CHECK(fs::status(folder / "other").permissions() == fs::perms::owner_all);
}
