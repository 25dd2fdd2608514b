#include "harness/OtherUserPosix.h"
#include "harness/TemporaryFolder.h"
#include "transfer/UploadFile.h"

#include <csignal>
#include <tuple>

#include <doctest/doctest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

constexpr int keptCount = 5;

auto RightsOf(const fs::path& path) {
    struct stat state = {};
    REQUIRE(::stat(path.c_str(), &state) == 0);
    return std::tuple(state.st_uid, state.st_gid, state.st_mode & 0777);
}

// No file of this process grows beyond `byteCount`.
class FileSizeLimit {
public:
    explicit FileSizeLimit(rlim_t byteCount) {
        ::signal(SIGXFSZ, SIG_IGN);
        ::getrlimit(RLIMIT_FSIZE, &before);
        const rlimit limit = {byteCount, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~FileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before); }

private:
    rlimit before = {};
};

}

TEST_CASE("UploadFile: links with its names are replaced, and their targets stay") {
    const TemporaryFolder folder;
    folder.WriteFile("victim", "precious");
    fs::create_symlink("victim", folder / "1.nc");
    fs::create_symlink("victim", folder / "1.nc.part");
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("new\n"));
    CHECK_FALSE(fs::is_symlink(folder / "1.nc.part"));
    REQUIRE(upload.Complete(keptCount));
    CHECK_FALSE(fs::is_symlink(folder / "1.nc"));
    CHECK(folder.ReadFile("1.nc") == "new\r\n");
    CHECK(folder.ReadFile("victim") == "precious");
    CHECK_FALSE(fs::exists(folder / "replaced"));
}

TEST_CASE("UploadFile: a new file and the folder of replaced ones take group and permissions of their folder") {
    struct Case {
        mode_t folder;
        mode_t file;
        mode_t replaced;
    };
    constexpr mode_t inheritsGroup = S_ISGID;
    for (const Case& expected : {Case{0775, 0664, 0775}, Case{0777, 0664, 0775}, Case{0750, 0640, 0750},
                                 Case{0770 | inheritsGroup, 0660, 0770 | inheritsGroup}}) {
        CAPTURE(expected.folder);
        const TemporaryFolder folder;
        // root may give any group, and other users one of their own.
        const gid_t group = ::geteuid() == 0 ? 1234 : ::getegid();
        REQUIRE(::chown(folder.Path().c_str(), static_cast<uid_t>(-1), group) == 0);
        REQUIRE(::chmod(folder.Path().c_str(), expected.folder) == 0);
        const mode_t before = ::umask(027);
        for (const char* line : {"old\n", "new\n"}) {
            UploadFile upload;
            REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
            CHECK(RightsOf(folder / "1.nc.part") == std::tuple(::geteuid(), group, expected.file));
            REQUIRE(upload.Store(line));
            REQUIRE(upload.Complete(keptCount));
        }
        ::umask(before);
        CHECK(RightsOf(folder / "1.nc") == std::tuple(::geteuid(), group, expected.file));
        CHECK(RightsOf(folder / "replaced") == std::tuple(::geteuid(), group, expected.replaced & 0777));
        CHECK((fs::status(folder / "replaced").permissions() & fs::perms::set_gid) ==
              static_cast<fs::perms>(expected.replaced & inheritsGroup));
    }
}

TEST_CASE("UploadFile: a group that this user may not give gets what everyone has") {
    const TemporaryFolder folder;
    if (::geteuid() != 0)
        return;
    fs::create_directory(folder / "nc");
    REQUIRE(::chown((folder / "nc").c_str(), 1234, 4321) == 0);
    REQUIRE(::chmod((folder / "nc").c_str(), 0775) == 0);
    REQUIRE(::chmod(folder.Path().c_str(), 0755) == 0);
    const gid_t ownGroup = ::getegid();
    const tarvin::test::OtherUser other;
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "nc/1.nc", UploadFile::Content::Text));
    CHECK(RightsOf(folder / "nc/1.nc.part") == std::tuple(::geteuid(), ownGroup, mode_t{0644}));
}

TEST_CASE("UploadFile: the new file has the rights of the older one, and the kept one its own") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "older");
    if (::geteuid() == 0)
        REQUIRE(::chown((folder / "1.nc").c_str(), 1234, 4321) == 0);
    REQUIRE(::chmod((folder / "1.nc").c_str(), 0640) == 0);
    const auto before = RightsOf(folder / "1.nc");
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("new\n"));
    REQUIRE(upload.Complete(keptCount));
    CHECK(RightsOf(folder / "1.nc") == before);
    CHECK(RightsOf(fs::directory_iterator(folder / "replaced")->path()) == before);
}

TEST_CASE("UploadFile: a failed write leaves the lines before it") {
    const TemporaryFolder folder;
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("0123456789\n"));
    {
        const FileSizeLimit limit(20);
        CHECK_FALSE(upload.Store("0123456789\n"));
    }
    CHECK(folder.ReadFile("1.nc.part") == "0123456789\r\n");
    CHECK(upload.BytesStored() == 12);
    // Room again.
    CHECK(upload.Store("x\n"));
    CHECK(folder.ReadFile("1.nc.part") == "0123456789\r\nx\r\n");
}

TEST_CASE("UploadFile: the end fails once the file is no longer where it was made") {
    const TemporaryFolder folder;
    fs::create_directory(folder / "NC");
    const auto removals = {
        +[](const fs::path& nc) { fs::remove(nc / "1.nc.part"); },
        +[](const fs::path& nc) { fs::rename(nc / "1.nc.part", nc / "elsewhere"); },
        +[](const fs::path& nc) {
            fs::rename(nc / "1.nc.part", nc / "elsewhere");
            fs::create_symlink("elsewhere", nc / "1.nc.part");
        },
        +[](const fs::path& nc) { fs::rename(nc, nc.parent_path() / "renamed"); },
    };
    for (const auto& remove : removals) {
        UploadFile upload;
        REQUIRE(upload.Begin(folder / "NC/1.nc", UploadFile::Content::Text));
        CHECK(upload.Store("N1\n"));
        remove(folder / "NC");
        const auto completed = upload.Complete(keptCount);
        REQUIRE_FALSE(completed);
        CHECK_FALSE(completed.Reason().isBusy);
        CHECK(upload.GiveUp().empty());
        CHECK_FALSE(fs::exists(folder / "NC/1.nc"));
    }
}

TEST_CASE("UploadFile: a pipe and a write-protected file are no names for an upload") {
    const TemporaryFolder folder;
    REQUIRE(::mkfifo((folder / "pipe").c_str(), 0600) == 0);
    REQUIRE(::mkfifo((folder / "1.nc.part").c_str(), 0600) == 0);
    UploadFile upload;
    CHECK_FALSE(upload.Begin(folder / "pipe", UploadFile::Content::Text));
    CHECK_FALSE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    folder.WriteFile("2.nc", "protected");
    REQUIRE(::chmod((folder / "2.nc").c_str(), 0444) == 0);
    REQUIRE(::chmod(folder.Path().c_str(), 0777) == 0);
    const test::OtherUser user; // nothing is protected from root
    const auto begun = upload.Begin(folder / "2.nc", UploadFile::Content::Text);
    REQUIRE_FALSE(begun);
    CHECK(ToUtf8(begun.Reason().text) == "it is write-protected");
}
