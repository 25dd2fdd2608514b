#include "harness/ManualClock.h"
#include "harness/TemporaryFolder.h"
#include "logging/ActivityLog.h"
#include "logging/CommsLog.h"

#include <csignal>

#include <doctest/doctest.h>
#include <sys/resource.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// Stands for a full disk: while it exists, no file of this process grows beyond the size.
class SizeLimit {
public:
    explicit SizeLimit(rlim_t byteCount) {
        std::signal(SIGXFSZ, SIG_IGN);
        REQUIRE(::getrlimit(RLIMIT_FSIZE, &before) == 0);
        const rlimit limit = {byteCount, before.rlim_max};
        REQUIRE(::setrlimit(RLIMIT_FSIZE, &limit) == 0);
    }
    ~SizeLimit() { ::setrlimit(RLIMIT_FSIZE, &before); }

private:
    rlimit before = {};
};

}

TEST_CASE("ActivityLog: a full disk tears no line, and the lines come when there is room") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    ActivityLog log(clock, last);
    folder.WriteFile("log", "earlier\r\n");
    log.Add({folder / "log", u"status", u"1", LocalTimeNow(), true});
    {
        const SizeLimit limit(15);
        CHECK_FALSE(log.Flush());
        CHECK(folder.ReadFile("log") == "earlier\r\n");
    }
    clock.Advance(1min);
    CHECK(log.Flush());
    CHECK(folder.ReadFile("log").starts_with("earlier\r\n       1 "));
    CHECK(folder.ReadFile("log").ends_with(" status\r\n"));
}

TEST_CASE("CommsLog: a full disk tears no line, and the run goes on where it stopped") {
    const TemporaryFolder folder;
    ManualClock clock;
    LastLogged last;
    CommsLog log(clock, last);
    REQUIRE(log.Open(folder / "log"));
    log.LogLine("one", true);
    CHECK(log.Flush());
    {
        const SizeLimit limit(50);
        log.LogLine("two", true);
        CHECK_FALSE(log.Flush());
    }
    clock.Advance(3s);
    REQUIRE(log.Resume());
    log.LogLine("three", true);
    CHECK(log.Close());
    CHECK(folder.ReadFile("log") == "00:00:00.000000 (+0.000000) one\r\n00:00:03.000000 (+3.000000) three\r\n");
}
