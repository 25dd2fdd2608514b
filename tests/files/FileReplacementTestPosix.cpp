#include "files/FileReplacement.h"
#include "files/NativeFile.h"
#include "harness/TemporaryFolder.h"

#include <iterator>
#include <string>
#include <tuple>

#include <doctest/doctest.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

auto RightsOf(const fs::path& path) {
    struct stat state = {};
    REQUIRE(::stat(path.c_str(), &state) == 0);
    return std::tuple(state.st_uid, state.st_gid, state.st_mode & 0777);
}

std::ptrdiff_t FileCount(const TemporaryFolder& folder) {
    return std::distance(fs::directory_iterator(folder.Path()), {});
}

}

TEST_CASE("ReplaceWholeFile: owner, group and permissions stay") {
    const TemporaryFolder folder;
    folder.WriteFile("settings", "old");
    const fs::path file = folder / "settings";
    // Root may give a file to anyone; other users keep what they have.
    if (::geteuid() == 0)
        REQUIRE(::chown(file.c_str(), 1234, 4321) == 0);
    for (const mode_t mode : {0640U, 0600U, 0666U}) {
        REQUIRE(::chmod(file.c_str(), mode) == 0);
        const auto before = RightsOf(file);
        CHECK(ReplaceWholeFile(file, "new"));
        CHECK(RightsOf(file) == before);
    }
}

TEST_CASE("ReplaceWholeFile: the file behind a link is replaced, and the link stays") {
    const TemporaryFolder folder;
    fs::create_directory(folder / "elsewhere");
    folder.WriteFile("elsewhere/settings", "old");
    fs::create_symlink("elsewhere/settings", folder / "settings");
    CHECK(ReplaceWholeFile(folder / "settings", "new"));
    CHECK(fs::is_symlink(folder / "settings"));
    CHECK(folder.ReadFile("elsewhere/settings") == "new");
}

TEST_CASE("ReplaceWholeFile: root follows no link in a folder of another user") {
    if (::geteuid() != 0)
        return;
    const TemporaryFolder folder;
    fs::create_directory(folder / "others");
    folder.WriteFile("victim", "precious");
    fs::create_symlink("../victim", folder / "others/settings");
    REQUIRE(::chown((folder / "others").c_str(), 1234, 1234) == 0);
    const auto replaced = ReplaceWholeFile(folder / "others/settings", "new");
    REQUIRE_FALSE(replaced);
    CHECK(replaced.Reason().text.find(u"link in a folder of another user") != KelText::npos);
    CHECK_FALSE(ReadWholeFile(folder / "others/settings", 100));
    CHECK(folder.ReadFile("victim") == "precious");
    // Its owner follows his own.
    REQUIRE(::chown((folder / "others").c_str(), 0, 0) == 0);
    CHECK(ReplaceWholeFile(folder / "others/settings", "new"));
    CHECK(folder.ReadFile("victim") == "new");
}

TEST_CASE("ReplaceWholeFile: files that killed programs have left go, and no other") {
    const TemporaryFolder folder;
    const fs::path settings = folder / "settings";
    const fs::path leftOver = FreshNameFor(settings);
    CHECK(FreshNameFor(settings) != leftOver);
    folder.WriteFile(leftOver.filename().string(), "half");
    folder.WriteFile("victim", "precious");
    const fs::path link = FreshNameFor(settings);
    fs::create_symlink("victim", link);
    const std::string kept[] = {"settings.new", "settings.1234.new", "settings.0123456789ABCDEF.new",
                                "settings.0123456789abcdef0.new", "settings2.0123456789abcdef.new"};
    for (const std::string& name : kept)
        folder.WriteFile(name, "another's");
    // Another program is writing this one.
    NativeFile underWay;
    const fs::path busy = FreshNameFor(settings);
    REQUIRE(underWay.Open(busy, NativeFile::Access::Create));
    REQUIRE(underWay.Lock());

    CHECK(ReplaceWholeFile(settings, "new"));
    CHECK_FALSE(fs::exists(leftOver));
    CHECK(fs::exists(busy));
    CHECK(fs::is_symlink(link));
    CHECK(folder.ReadFile("victim") == "precious");
    for (const std::string& name : kept)
        CHECK(folder.ReadFile(name) == "another's");
    underWay.Close();
    CHECK(ReplaceWholeFile(settings, "newer"));
    CHECK(FileCount(folder) == 8);
}

TEST_CASE("NativeFile: Create refuses every name that exists, and a link that leads nowhere") {
    const TemporaryFolder folder;
    folder.WriteFile("file", "content");
    fs::create_symlink("file", folder / "link");
    fs::create_symlink("nowhere", folder / "dangling");
    for (const char* name : {"file", "link", "dangling"}) {
        NativeFile file;
        CHECK_FALSE(file.Open(folder / name, NativeFile::Access::Create));
    }
    CHECK(folder.ReadFile("file") == "content");
    CHECK_FALSE(fs::exists(folder / "nowhere"));
}
