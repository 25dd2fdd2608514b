#include "harness/OtherUserPosix.h"
#include "harness/ProtocolHarness.h"
#include "harness/Transcript.h"
#include "protocol/TarvinApp.h"

#include <doctest/doctest.h>
#include <sys/stat.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// Asks for a fresh file of which the system does not tell whether another program writes it. It tells root and the
// owner of the file, so a user who is not root gets the answer at once.
struct FreshFile {
    FreshFile() {
        REQUIRE(::chmod(harness.folder.Path().c_str(), 0755) == 0);
        harness.folder.WriteFile("NC/7.nc", "N1\n");
        const OtherUser user;
        answer = harness.Exchange(Message("ABSE7"));
    }

    ProtocolHarness<TarvinApp> harness;
    std::string answer;
    const std::string begun = Message("AAAK") + Message("AADAN1");
};

}

TEST_CASE("TarvinApp: a fresh file is sent if it is still the same a quarter of a second later") {
    const bool isRoot = ::geteuid() == 0;
    FreshFile unchanged;
    CHECK(unchanged.answer == (isRoot ? "" : unchanged.begun));
    CHECK(unchanged.harness.Wait(249ms).empty());
    CHECK(unchanged.harness.Wait(1ms) == (isRoot ? unchanged.begun : ""));

    FreshFile grown;
    grown.harness.folder.WriteFile("NC/7.nc", "N1\nN2\n");
    CHECK(grown.harness.Wait(250ms) == (isRoot ? Message("AAAK01") : ""));
    CHECK(ToUtf8(grown.harness.observed.transfer.Reason()) == (isRoot ? "it has changed while it was read" : ""));

    for (const char* next : {"ABTS", "ABST8", "ABSE404"}) {
        CAPTURE(next);
        FreshFile given;
        CHECK(given.harness.Exchange(Message(next)) != "");
        CHECK(given.harness.Wait(1h).empty());
    }
}
