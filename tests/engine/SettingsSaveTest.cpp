#include "harness/EngineHarness.h"
#include "protocol/RawProtocol.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("Monitor: settings that cannot be saved are told, with the file and the system's reason") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    const std::string file = (harness.folder / "LASER.INI").string();
    std::filesystem::remove(file);
    std::filesystem::create_directory(file);
    harness.engine->Close();
    REQUIRE(harness.events.boxes.size() == 1);
    const std::string head = "Problem: The settings could not be saved.\n" + file + ": ";
    CHECK(harness.events.boxes.front().starts_with(head));
    CHECK(harness.events.boxes.front().size() > head.size());
}
