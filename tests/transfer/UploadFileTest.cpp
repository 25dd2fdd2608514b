#include "transfer/UploadFile.h"

#include "harness/TemporaryFolder.h"

#include <algorithm>
#include <regex>
#include <set>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
namespace fs = std::filesystem;

namespace {

constexpr int keptCount = 5;

// The names in the folder, with "<time>" in place of a time, in order.
std::vector<std::string> Names(const fs::path& folder) {
    static const std::regex time("\\d{4}-\\d\\d-\\d\\d_\\d{6}(_\\d+)?");
    std::vector<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder))
        names.push_back(std::regex_replace(entry.path().filename().string(), time, "<time>"));
    std::sort(names.begin(), names.end());
    return names;
}

using List = std::vector<std::string>;

std::set<fs::path> Paths(const fs::path& folder) {
    return {fs::directory_iterator(folder), fs::directory_iterator()};
}

Result<UploadFile::Ending> Upload(const fs::path& path, std::string_view content, int replacedFilesKept = keptCount) {
    UploadFile upload;
    REQUIRE(upload.Begin(path, UploadFile::Content::Bytes));
    REQUIRE(upload.Store(content));
    return upload.Complete(replacedFilesKept);
}

std::string ContentOfOnly(const TemporaryFolder& folder, std::string_view name) {
    const fs::path only = fs::directory_iterator(folder / name)->path();
    return folder.ReadFile((fs::path(name) / only.filename()).string());
}

}

TEST_CASE("UploadFile: the older file stays whole until the end, and in 'replaced' after it") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "older");
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("new\n"));
    CHECK(folder.ReadFile("1.nc") == "older");
    CHECK(Names(folder.Path()) == List{"1.nc", "1.nc.part"});
    REQUIRE(upload.Complete(keptCount));
    CHECK_FALSE(upload.IsOpen());
    CHECK(upload.BytesStored() == 5);
    CHECK(folder.ReadFile("1.nc") == "new\r\n");
    CHECK(Names(folder.Path()) == List{"1.nc", "replaced"});
    CHECK(Names(folder / "replaced") == List{"1.nc.<time>"});
    CHECK(ContentOfOnly(folder, "replaced") == "older");
}

TEST_CASE("UploadFile: an upload that is given up leaves its lines as '.part', and the next one begins anew") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "older");
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("first\n"));
    CHECK(upload.GiveUp().empty());
    CHECK(folder.ReadFile("1.nc.part") == "first\r\n");
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Text));
    CHECK(upload.Store("2\n"));
    upload.GiveUp();
    CHECK(folder.ReadFile("1.nc.part") == "2\r\n");
    CHECK(folder.ReadFile("1.nc") == "older");
    CHECK(Names(folder.Path()) == List{"1.nc", "1.nc.part"});
}

TEST_CASE("UploadFile: one program at a time sends a file, and another file at the same time") {
    const TemporaryFolder folder;
    UploadFile first;
    UploadFile second;
    REQUIRE(first.Begin(folder / "1.nc", UploadFile::Content::Text));
    const auto refused = second.Begin(folder / "1.nc", UploadFile::Content::Text);
    REQUIRE_FALSE(refused);
    CHECK(ToUtf8(refused.Reason().text) == "another machine is sending this file");
    CHECK(second.Begin(folder / "2.nc", UploadFile::Content::Text));
    CHECK(first.Store("N1\n"));
    CHECK(first.Complete(keptCount));
    CHECK(folder.ReadFile("1.nc") == "N1\r\n");
    second.GiveUp();
    CHECK(second.Begin(folder / "1.nc", UploadFile::Content::Text));
}

TEST_CASE("UploadFile: the newest replaced files of a name stay, and every other file") {
    const TemporaryFolder folder;
    fs::create_directories(folder / "replaced/1.nc.2001-01-01_000000");
    const List others = {"1.nc.2001-01-01_00000",  "1.nc.2001-01-01_000000x", "1.nc.2001-01-01_000000_",
                         "1.nc.2001-01-01-000000", "12.nc.2001-01-01_000000", "1.nc"};
    for (const std::string& name : others)
        folder.WriteFile("replaced/" + name, "of a user");
    for (const char* name : {"1.nc.2001-01-01_000001", "1.nc.2001-01-01_000001_2", "1.nc.2001-01-01_000001_10"})
        folder.WriteFile(std::string("replaced/") + name, name);
    folder.WriteFile("1.nc", "0");
    CHECK(Upload(folder / "1.nc", "1", 3));
    CHECK_FALSE(fs::exists(folder / "replaced/1.nc.2001-01-01_000001"));
    CHECK(fs::exists(folder / "replaced/1.nc.2001-01-01_000001_2"));
    CHECK(Upload(folder / "1.nc", "2", 2));
    CHECK_FALSE(fs::exists(folder / "replaced/1.nc.2001-01-01_000001_10"));
    // Equal bytes replace nothing that a user may want back.
    const auto keptBefore = Paths(folder / "replaced");
    CHECK(Upload(folder / "1.nc", "2", 2));
    CHECK((Paths(folder / "replaced") == keptBefore));
    CHECK(Names(folder / "replaced").size() == others.size() + 1 + 2);
    CHECK(Upload(folder / "1.nc", "3", 0));
    for (const std::string& name : others)
        CHECK(folder.ReadFile("replaced/" + name) == "of a user");
    CHECK(Names(folder / "replaced").size() == others.size() + 1);
    CHECK(folder.ReadFile("1.nc") == "3");
}

TEST_CASE("UploadFile: an upload without a line leaves an older file, and makes an empty one where there is none") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "older");
    const auto left = Upload(folder / "1.nc", "");
    REQUIRE(left);
    CHECK(*left == UploadFile::Ending::OlderStays);
    CHECK(folder.ReadFile("1.nc") == "older");
    const auto made = Upload(folder / "2.nc", "");
    REQUIRE(made);
    CHECK(*made == UploadFile::Ending::TookName);
    CHECK(Names(folder.Path()) == List{"1.nc", "2.nc"});
}

TEST_CASE("UploadFile: a whole file that cannot take its name stays as '.whole', and the older one in its place") {
    const TemporaryFolder folder;
    folder.WriteFile("1.nc", "older");
    folder.WriteFile("replaced", "no folder");
    UploadFile upload;
    REQUIRE(upload.Begin(folder / "1.nc", UploadFile::Content::Bytes));
    REQUIRE(upload.Store("all of it"));
    const auto completed = upload.Complete(keptCount);
    REQUIRE_FALSE(completed);
    CHECK(ToUtf8(completed.Reason().text).starts_with("the older file cannot be kept in "));
    const fs::path whole = upload.GiveUp();
    CHECK(folder.ReadFile(whole.filename().string()) == "all of it");
    CHECK(folder.ReadFile("1.nc") == "older");
    CHECK(Names(folder.Path()) == List{"1.nc", "1.nc.<time>.whole", "replaced"});

    REQUIRE(upload.Begin(folder / "2.nc", UploadFile::Content::Bytes));
    REQUIRE(upload.Store("x"));
    fs::create_directory(folder / "2.nc");
    CHECK_FALSE(upload.Complete(keptCount));
    CHECK(upload.GiveUp() != fs::path());
}

TEST_CASE("UploadFile: a name that no file can take is refused before anything arrives") {
    const TemporaryFolder folder;
    fs::create_directory(folder / "folder");
    fs::create_directory(folder / "1.nc.part");
    folder.WriteFile("file", "content");
    for (const std::string& name : {std::string("folder"), std::string("1.nc"), std::string("missing/1.nc"),
                                    std::string("file/1.nc"), std::string(240, 'x')}) {
        CAPTURE(name);
        UploadFile upload;
        const auto begun = upload.Begin(folder / name, UploadFile::Content::Text);
        REQUIRE_FALSE(begun);
        CHECK_FALSE(begun.Reason().text.empty());
    }
    CHECK(Names(folder.Path()) == List{"1.nc.part", "file", "folder"});
}
