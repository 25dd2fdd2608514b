#include "files/MachineLock.h"

#include "base/Process.h"
#include "harness/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

namespace {

MachineHolder OwnWindow() {
    return {MachineHolder::Kind::Window, OwnProcessId(), u"J\u00F6rg = 2", ComputerName(), u"00a1f", u"12346"};
}

}

TEST_CASE("MachineLock: a second program is refused and learns who has the lock, until that one releases it") {
    const TemporaryFolder folder;
    const auto settings = folder / "CUT v2.1.INI";
    MachineHolder service = OwnWindow();
    service.kind = MachineHolder::Kind::Service;
    MachineLock second(settings);
    for (const MachineHolder& holder : {OwnWindow(), service}) {
        MachineLock first(settings);
        REQUIRE(first.Take(holder));
        const auto refused = second.Take(OwnWindow());
        REQUIRE(!refused);
        CHECK(refused.Reason().isBusy);
        CHECK(second.Holder() == holder);
        MachineLock other(folder / "CUT v2.2.INI");
        CHECK(other.Take(OwnWindow()));
    }
    CHECK(folder.ReadFile("CUT v2.1.lock").empty());
    CHECK(second.Take(OwnWindow()));
}

TEST_CASE("MachineLock: what a killed program or an unfinished write has left is not taken for the holder") {
    const TemporaryFolder folder;
    const std::string record =
        "TarvinDL lock\nkind=window\nprocess=4294967295\nuser=anna\ncomputer=" + ToUtf8(ComputerName()) +
        "\nraise=00001\n";
    for (const std::string& left : {record + "end\n", record, record.substr(0, 40), std::string(5000, 'x')}) {
        folder.WriteFile("LASER.lock", left);
        NativeFile holder;
        REQUIRE(holder.Open(folder / "LASER.lock", NativeFile::Access::Append));
        REQUIRE(holder.Lock());
        CHECK(!MachineLock(folder / "LASER.INI").Holder());
    }
}

TEST_CASE("MachineLock: a file that is none of its own keeps its content") {
    const TemporaryFolder folder;
    folder.WriteFile("LASER.lock", "N10 G00\r\n");
    {
        MachineLock lock(folder / "LASER.INI");
        CHECK(lock.Take(OwnWindow()));
        CHECK(!MachineLock(folder / "LASER.INI").Take(OwnWindow()));
    }
    CHECK(folder.ReadFile("LASER.lock") == "N10 G00\r\n");
}
