#include "base/Process.h"
#include "files/MachineLock.h"
#include "harness/OtherUserPosix.h"
#include "harness/TemporaryFolder.h"

#include <filesystem>
#include <optional>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("MachineLock: it works for a user who may only read, and a folder without rights is no other program") {
    const TemporaryFolder folder;
    const MachineHolder self = {MachineHolder::Kind::Service, OwnProcessId(), u"anna", ComputerName(), {}, {}};
    std::filesystem::permissions(folder.Path(), static_cast<std::filesystem::perms>(0755));
    std::optional<MachineLock> first(std::in_place, folder / "LASER.INI");
    REQUIRE(first->Take(self));
    const OtherUser other;
    MachineLock reader(folder / "LASER.INI");
    const auto refused = reader.Take(self);
    REQUIRE(!refused);
    CHECK(refused.Reason().isBusy);
    CHECK(reader.Holder() == self);
    first.reset();
    CHECK(reader.Take(self));
    const auto without = MachineLock(folder / "NEW.INI").Take(self);
    REQUIRE(!without);
    CHECK(!without.Reason().isBusy);
}
