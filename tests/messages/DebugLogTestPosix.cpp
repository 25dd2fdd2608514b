#include "harness/TemporaryFolder.h"
#include "messages/DebugLog.h"

#include <csignal>

#include <doctest/doctest.h>
#include <sys/resource.h>

using namespace tarvin;

TEST_CASE("DebugLog: a text without room on the disk counts as not written, and the log goes on when there is room") {
    const test::TemporaryFolder folder;
    DebugLog log([&] { return folder.Path(); }, [] { return std::filesystem::path(); });
    rlimit before = {};
    REQUIRE(::getrlimit(RLIMIT_FSIZE, &before) == 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit full = {4, before.rlim_max};
    REQUIRE(::setrlimit(RLIMIT_FSIZE, &full) == 0);
    const int results[] = {log.Log(u"too long"), log.Log(u"1234"), log.Log(u"5")};
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    CHECK(results[0] == 0);
    CHECK(results[1] == 4);
    CHECK(results[2] == 0);
    CHECK(log.Log(u"6") == 1);
    CHECK(folder.ReadFile("Debug.Log") == "12346");
}
