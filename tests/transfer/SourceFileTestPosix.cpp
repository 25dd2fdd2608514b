#include "harness/OtherUserPosix.h"
#include "harness/TemporaryFolder.h"
#include "transfer/SourceFile.h"

#include <csignal>
#include <fstream>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

constexpr std::span<const fs::path> noLinkedFolders;

// The reason of a refusal; "open" if the file is opened.
std::string Open(const fs::path& path, std::span<const fs::path> linkedFolders = noLinkedFolders) {
    SourceFile source;
    const auto opened = source.Open(path, linkedFolders);
    return opened ? "open" : ToUtf8(opened.Reason().text);
}

std::string Content(SourceFile& source) {
    char bytes[100];
    return std::string(bytes, source.File().Read(bytes, sizeof bytes).ValueOr(0));
}

}

TEST_CASE("SourceFile: the exact name is opened, else the one that differs in case alone") {
    const TemporaryFolder folder;
    fs::create_directory(folder / "5.Nc");
    for (const char* name : {"1.nc", "1.NC", "2.NC", "3.NC", "3.Nc", "5.NC"})
        folder.WriteFile(name, name);
    for (const auto& [name, expected] : {std::pair{"1.nc", "1.nc"}, {"2.nc", "2.NC"}, {"5.nc", "5.NC"}}) {
        SourceFile source;
        REQUIRE(source.Open(folder / name, noLinkedFolders));
        CHECK(Content(source) == expected);
    }
    CHECK(Open(folder / "3.nc") == "more than one name differs in case alone: 3.NC, 3.Nc");
    CHECK(Open(folder / "4.nc") == "");
    CHECK(Open(folder / "missing/4.nc") == "");
    CHECK(Open(folder / "5.Nc") == "it is no regular file");
}

TEST_CASE("SourceFile: a link is followed to a regular file below a folder that is allowed") {
    const TemporaryFolder folder;
    for (const char* name : {"NC/sub", "linked", "linked2", "outside"})
        fs::create_directories(folder / name);
    for (const char* name : {"NC/sub/1", "linked/2", "linked2/3", "outside/4"})
        folder.WriteFile(name, name);
    fs::create_symlink("sub/1", folder / "NC/1");
    fs::create_symlink("../linked/2", folder / "NC/2");
    fs::create_symlink("../linked2/3", folder / "NC/3");
    fs::create_symlink(folder / "NC/2", folder / "NC/22");
    fs::create_symlink("../../outside/4", folder / "NC/sub/4");
    fs::create_symlink("sub/4", folder / "NC/4");
    fs::create_symlink("nowhere", folder / "NC/5");
    fs::create_symlink("sub", folder / "NC/6");
    fs::create_symlink("/dev/zero", folder / "NC/7");
    REQUIRE(::mkfifo((folder / "NC/pipe").c_str(), 0600) == 0);
    fs::create_symlink("NC", folder / "link to NC");
    const fs::path linked[] = {folder / "missing", folder / "linked", "/dev"};
    CHECK(Open(folder / "NC/1") == "open");
    CHECK(Open(folder / "link to NC/1") == "open");
    CHECK(Open(folder / "NC/2") == "it is a link to " + (folder / "linked/2").string() + ", outside the folder");
    CHECK(Open(folder / "NC/2", linked) == "open");
    CHECK(Open(folder / "NC/22", linked) == "open");
    CHECK(Open(folder / "NC/3", linked).starts_with("it is a link"));
    CHECK(Open(folder / "NC/4", linked).starts_with("it is a link"));
    for (const char* name : {"NC/5", "NC/6", "NC/7", "NC/pipe"})
        CHECK(Open(folder / name, linked) != "open");
}

TEST_CASE("SourceFile: a file that another program is writing is refused for a minute, and one that changes always") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "N1\n");
    const fs::path file = folder / "1.nc";
    std::ofstream writer(file, std::ios::app);
    CHECK(Open(file) == "another program is writing it");
    // An editor may keep the file open all day.
    fs::last_write_time(file, fs::file_time_type::clock::now() - 2min);
    SourceFile source;
    REQUIRE(source.Open(file, noLinkedFolders));
    CHECK_FALSE(source.NeedsSecondLook());
    CHECK(source.CheckUnchanged());
    writer << "N2\n" << std::flush;
    CHECK_FALSE(source.CheckUnchanged());
    writer.close();
    REQUIRE(source.Open(file, noLinkedFolders));
    CHECK_FALSE(source.NeedsSecondLook());
    CHECK(source.CheckUnchanged());
    fs::remove(file);
    CHECK_FALSE(source.CheckUnchanged());
}

TEST_CASE("SourceFile: a program may open the file for writing at every moment, and the signal of it ends nothing") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "N1\n");
    CHECK(Open(folder / "1.nc") == "open");
    struct sigaction action = {};
    REQUIRE(::sigaction(SIGIO, nullptr, &action) == 0);
    CHECK((action.sa_handler == SIG_IGN));
    SourceFile source;
    REQUIRE(source.Open(folder / "1.nc", noLinkedFolders));
    // Would fail as long as the source held a lease.
    const int descriptor = ::open((folder / "1.nc").c_str(), O_WRONLY | O_NONBLOCK);
    CHECK(descriptor >= 0);
    ::close(descriptor);
}

TEST_CASE("SourceFile: where the system cannot tell, a fresh file needs a second look") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "N1\n");
    REQUIRE(::chmod(folder.Path().c_str(), 0755) == 0);
    const bool isRoot = ::geteuid() == 0;
    // The kernel tells it to the owner of the file and to root. A user who is not root has no other fresh file.
    const fs::path file = isRoot ? folder / "1.nc" : fs::path("/etc/passwd");
    for (const auto age : {0s, 11s}) {
        fs::last_write_time(folder / "1.nc", fs::file_time_type::clock::now() - age);
        SourceFile source;
        {
            const test::OtherUser user;
            REQUIRE(source.Open(file, noLinkedFolders));
        }
        CHECK(source.NeedsSecondLook() == (isRoot && age < 10s));
    }
}
