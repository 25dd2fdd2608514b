#include "files/KelFile.h"

#include "harness/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

TEST_CASE("KelFile: text mode ends each line with CR LF, in pieces too") {
    const TemporaryFolder folder;
    KelFile file;
    REQUIRE(file.Open(folder / "upload", KelFile::Mode::WriteText));
    for (const char* piece : {"a\n", "b\r\n", "c\r", "\n", "d\n\n", "\r"})
        CHECK(file.Write(piece));
    CHECK(file.BytesWritten() == 15);
    file.Close();
    CHECK(folder.ReadFile("upload") == "a\r\nb\r\nc\r\nd\r\n\r\n\r");
    REQUIRE(file.Open(folder / "upload", KelFile::Mode::AppendText));
    CHECK(file.Write("e\n"));
    file.Close();
    CHECK(folder.ReadFile("upload") == "a\r\nb\r\nc\r\nd\r\n\r\n\re\r\n");
}

TEST_CASE("KelFile: opening an open file succeeds and changes nothing") {
    const TemporaryFolder folder;
    KelFile file;
    REQUIRE(file.Open(folder / "first", KelFile::Mode::WriteBytes));
    CHECK(file.Write("1"));
    CHECK(file.Open(folder / "second", KelFile::Mode::ReadText));
    CHECK(file.IsWriting());
    CHECK(file.Write("2\n"));
    file.Close();
    CHECK(folder.ReadFile("first") == "12\n");
    CHECK_FALSE(std::filesystem::exists(folder / "second"));
}

TEST_CASE("KelFile: only regular files are opened, and a refusal has a reason") {
    const TemporaryFolder folder;
    folder.WriteFile("precious", "content");
    for (const auto mode : {KelFile::Mode::ReadText, KelFile::Mode::WriteText}) {
        for (const auto& path : {folder.Path(), folder / "missing/file"}) {
            KelFile file;
            const auto opened = file.Open(path, mode);
            REQUIRE_FALSE(opened);
            CHECK_FALSE(file.IsOpen());
            CHECK_FALSE(opened.Reason().text.empty());
        }
    }
}

TEST_CASE("ReplaceWholeFile: a failure keeps the old file and leaves no other behind") {
    const TemporaryFolder folder;
    folder.WriteFile("settings", "old");
    CHECK(ReplaceWholeFile(folder / "settings", "new"));
    CHECK(folder.ReadFile("settings") == "new");
    CHECK_FALSE(ReplaceWholeFile(folder / "settings/below", "lost"));
    std::filesystem::create_directory(folder / "folder");
    CHECK_FALSE(ReplaceWholeFile(folder / "folder", "lost"));
    CHECK(std::distance(std::filesystem::directory_iterator(folder.Path()), {}) == 2);
    CHECK(ReadWholeFile(folder / "settings", 3).ValueOr("") == "new");
    CHECK_FALSE(ReadWholeFile(folder / "settings", 2));
}
