#include "harness/TemporaryFolder.h"
#include "messages/SuppressedMessages.h"

#include <doctest/doctest.h>
#include <sys/stat.h>

using namespace tarvin;

TEST_CASE("SuppressedMessages: a list that cannot be read is not replaced") {
    const test::TemporaryFolder folder;
    REQUIRE(::mkfifo((folder / "list").c_str(), 0600) == 0);
    CHECK_FALSE(SuppressedMessages(folder / "list").Add(3));
    CHECK(std::filesystem::is_fifo(folder / "list"));
}
