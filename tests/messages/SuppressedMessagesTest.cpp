#include "messages/SuppressedMessages.h"

#include "harness/TemporaryFolder.h"

#include <utility>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;
using Content = SuppressedMessages::Content;

TEST_CASE("SuppressedMessages: a list keeps each line that is a number, and the numbers that other programs add") {
    // The first MiB ends in the middle of the number 123456.
    const std::string tenMegabytes = "4\n" + std::string(1048569, 'x') + "\n123456\n" + std::string(9 << 20, '\n');
    struct Case {
        std::string content;
        Content state;
        std::string kept;
    };
    const Case cases[] = {
        {"1\r\n2", Content::Sound, "1\r\n2\r\n8\r\n9\r\n"},
        {"\xEF\xBB\xBF-1\n", Content::Sound, "-1\r\n8\r\n9\r\n"},
        {"1\n\n 2\n3 4\n0x5\n6\n", Content::Damaged, "1\r\n6\r\n8\r\n9\r\n"},
        {"2147483648\n-2147483649\n99999999999999999999\n-\n2147483647\n", Content::Damaged,
         "8\r\n9\r\n2147483647\r\n"},
        {std::string("\0\xFF\x7F\r\r\n\n3\n\xC3", 9), Content::Damaged, "3\r\n8\r\n9\r\n"},
        {tenMegabytes, Content::Damaged, "4\r\n8\r\n9\r\n"},
    };
    for (const Case& each : cases) {
        CAPTURE(each.kept);
        const TemporaryFolder folder;
        folder.WriteFile("list", each.content);
        SuppressedMessages messages(folder / "list");
        CHECK(messages.Read() == each.state);
        CHECK(SuppressedMessages(folder / "list").Add(8));
        CHECK(messages.Add(9));
        CHECK(folder.ReadFile("list") == each.kept);
        CHECK(messages.Clear());
        CHECK_FALSE(messages.Contains(9));
        CHECK(messages.Add(7));
        CHECK(folder.ReadFile("list") == "7\r\n");
    }
}

TEST_CASE("SuppressedMessages: a number that cannot be written holds for this run") {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "list");
    folder.WriteFile("file", "content");
    for (const auto& each :
         {std::pair(folder / "list", Content::Unreadable), std::pair(folder / "file/list", Content::Sound)}) {
        SuppressedMessages messages(each.first);
        CHECK(messages.Read() == each.second);
        CHECK_FALSE(messages.Add(3));
        CHECK(messages.Contains(3));
    }
    CHECK_FALSE(SuppressedMessages(folder / "list").Clear());
    CHECK(std::distance(std::filesystem::directory_iterator(folder.Path()), {}) == 2);
}
