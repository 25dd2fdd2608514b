#include "transfer/LineList.h"

#include "harness/TemporaryFolder.h"

#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
using Lines = std::vector<std::string>;
using Kind = LineList::Fault::Kind;

namespace {

constexpr std::size_t longestLineAllowed = 993;

std::optional<LineList::Fault> Load(const TemporaryFolder& folder, std::string_view content, LineList& lines) {
    folder.WriteFile("nc", content);
    NativeFile file;
    REQUIRE(file.Open(folder / "nc", NativeFile::Access::Read));
    const std::atomic<bool> stop = false;
    const auto loaded = lines.Load(file, stop, longestLineAllowed);
    REQUIRE(loaded);
    return *loaded;
}

Lines All(LineList& lines) {
    Lines all;
    for (std::string_view line = lines.NextNonEmpty(); !line.empty(); line = lines.NextNonEmpty())
        all.emplace_back(line);
    return all;
}

std::string Repeated(std::string_view text, std::size_t count) {
    std::string all;
    for (std::size_t number = 0; number < count; ++number)
        all += text;
    return all;
}

}

TEST_CASE("LineList: lines end with an LF and the CRs beside it, and marks at both ends belong to none") {
    struct Case {
        std::string content;
        Lines lines;
    };
    const Case cases[] = {
        {"", {}},
        {"\n\r\n\n", {}},
        {"a\nb\n", {"a", "b"}},
        {"a\r\nb\r\n", {"a", "b"}},
        {"a\r\n\n\r\nb\nc", {"a", "b", "c"}},
        {"a\r\nb\r", {"a", "b"}},
        {" \n%\t\x80\xFF\n", {" ", "%\t\x80\xFF"}},
        {"a\r\r\nb\r\r\n\r\r\nc", {"a", "b", "c"}},
        {"a\n\r\rb\n\r\r\n\r\rc\n\r\r", {"a", "b", "c"}},
        {std::string("a\0b\n", 4), {std::string("a\0b", 3)}},
        {"\xEF\xBB\xBF"
         "a\nb\n",
         {"a", "b"}},
        {"\xEF\xBB\xBF", {}},
        {"a\n\xEF\xBB\xBF"
         "b\n",
         {"a", "\xEF\xBB\xBF"
               "b"}},
        {"a\r\n\x1A", {"a"}},
        {"a\r\nb\r\x1A\x1A\x1A", {"a", "b"}},
        {"a\x1A\r\nb", {"a\x1A", "b"}},
        {std::string(993, 'x') + "\r\n" + std::string(993, 'y') + std::string(128, '\x1A'),
         {std::string(993, 'x'), std::string(993, 'y')}},
    };
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        CAPTURE(each.content);
        LineList lines;
        CHECK_FALSE(Load(folder, each.content, lines));
        CHECK(lines.FileSize() == each.content.size());
        CHECK(All(lines) == each.lines);
        CHECK(lines.NextNonEmpty().empty());
    }
}

TEST_CASE("LineList: the first fault is told with its line, and the controller gets nothing") {
    struct Case {
        std::string content;
        Kind kind;
        std::int64_t lineNumber = 1;
        bool isLongerThanText = false;
    };
    const std::string manyLines = Repeated("N10 G01 X1.5 Y2\r\n", 40'000);
    const Case cases[] = {
        {"a\n" + std::string(994, 'x') + "\n", Kind::LongLine, 2},
        {"a\n" + std::string(24576, 'x'), Kind::LongLine, 2},
        {"a\n" + std::string(24577, 'x') + "\r\nb\n", Kind::LongLine, 2, true},
        {std::string(1'000'000, 'x') + "\n", Kind::LongLine, 1, true},
        {manyLines + std::string(994, 'x') + "\n" + manyLines, Kind::LongLine, 40'001},
        {"a\rb\n", Kind::StrayReturn},
        {"\ra\n", Kind::StrayReturn},
        {"a\r\nb\rc\r", Kind::StrayReturn, 2},
        {"a\nb\rc\n" + std::string(994, 'x') + "\n", Kind::StrayReturn, 2},
        {std::string(994, 'x') + "\nb\rc\n", Kind::LongLine},
        {manyLines + "a\rb\n", Kind::StrayReturn, 40'001},
        {Repeated("N10\r", 10'000), Kind::StrayReturn, 1, true},
        {std::string(1'000'000, '\r') + "\n", Kind::StrayReturn},
        {std::string("\xFF\xFEN\0", 4), Kind::Utf16},
        {std::string("\xFE\xFF\0N", 4), Kind::Utf16},
        {std::string("N\0\n\0", 4), Kind::Utf16},
        {std::string("\0N\0"
                     "1\0\n",
                     6),
         Kind::Utf16},
    };
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        CAPTURE(each.content.substr(0, 40));
        CAPTURE(each.content.size());
        LineList lines;
        const auto fault = Load(folder, each.content, lines);
        REQUIRE(fault);
        CHECK(fault->kind == each.kind);
        CHECK(fault->lineNumber == each.lineNumber);
        CHECK(fault->isLongerThanText == each.isLongerThanText);
        CHECK(lines.NextNonEmpty().empty());
    }
}

TEST_CASE("LineList: lines stay whole wherever the reads of a large file part them") {
    const TemporaryFolder folder;
    for (const std::size_t offset : {0U, 1U, 2U, 3U, 4U, 5U}) {
        CAPTURE(offset);
        const std::string first(900, 'x');
        const std::string content = std::string(offset, '\n') + Repeated(first + "\r\nb\n\rc\r\r\n", 1000);
        LineList lines;
        CHECK_FALSE(Load(folder, content, lines));
        const Lines all = All(lines);
        REQUIRE(all.size() == 3000);
        for (std::size_t index = 0; index < all.size(); index += 3)
            CHECK((all[index] == first && all[index + 1] == "b" && all[index + 2] == "c"));
    }
}
