#include "transfer/LineList.h"

#include "harness/TemporaryFolder.h"

#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

namespace {

LineList::LoadResult Load(const TemporaryFolder& folder, std::string_view content, LineList& lines) {
    folder.WriteFile("nc", content);
    KelFile file;
    REQUIRE(file.Open(folder / "nc", KelFile::Mode::ReadText));
    const std::atomic<bool> stop = false;
    return lines.Load(file, stop);
}

std::vector<std::string> All(LineList& lines) {
    std::vector<std::string> all;
    for (std::string_view line = lines.NextNonEmpty(); !line.empty(); line = lines.NextNonEmpty())
        all.emplace_back(line);
    return all;
}

}

TEST_CASE("LineList: lines end with LF or CR LF") {
    using Lines = std::vector<std::string>;
    struct Case {
        std::string content;
        Lines lines;
        bool hasStrayReturn = false;
    };
    const Case cases[] = {
        {"", {}},
        {"\n\r\n\n", {}},
        {"a\nb\n", {"a", "b"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\r\n\n\r\nb\nc", {"a", "b", "c"}},
        {"a\r\nb\r", {"a", "b"}},
        {" \n%\t\x80\xFF\n", {" ", "%\t\x80\xFF"}},
        {"a\rb\n", {"a\rb"}, true},
        {"a\r\r\nb\n", {"a\r", "b"}, true},
        {std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
    };
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        CAPTURE(each.content);
        LineList lines;
        CHECK(Load(folder, each.content, lines) == LineList::LoadResult::Loaded);
        CHECK(lines.HasStrayCarriageReturn() == each.hasStrayReturn);
        CHECK(lines.FileSize() == each.content.size());
        CHECK(All(lines) == each.lines);
        CHECK(lines.NextNonEmpty().empty());
    }
}

TEST_CASE("LineList: a line that is too long ends the file, and the lines before it stay") {
    const TemporaryFolder folder;
    for (const char* end : {"\n", "\r\n", ""}) {
        LineList lines;
        CHECK(Load(folder, "a\n" + std::string(24576, 'x') + end, lines) == LineList::LoadResult::Loaded);
        CHECK(lines.LongestLine() == 24576);
        CHECK(Load(folder, "a\nbb\r\n" + std::string(24577, 'x') + end + "c\n", lines) ==
              LineList::LoadResult::NotText);
        CHECK(lines.LongestLine() == 2);
        CHECK_FALSE(lines.HasStrayCarriageReturn());
        CHECK(All(lines) == std::vector<std::string>{"a", "bb"});
    }
}
