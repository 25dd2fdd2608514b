#include "files/Installation.h"

#include <doctest/doctest.h>
#include <stdlib.h>

using namespace tarvin;

TEST_CASE("SystemInstallationCandidates: empty and relative folders in the environment are ignored") {
    const auto set = [](const char* name, const char* value) {
        return value == nullptr ? ::unsetenv(name) : ::setenv(name, value, 1);
    };
    struct Case {
        const char* chosen;
        const char* dataHome;
        const char* home;
        std::optional<std::filesystem::path> expectedChosen;
        std::vector<std::filesystem::path> expectedUser;
    };
    const Case cases[] = {
        {"/chosen", "/data", "/home/a", "/chosen", {"/data/TarvinDL/2026"}},
        {nullptr, nullptr, "/home/a", std::nullopt, {"/home/a/.local/share/TarvinDL/2026"}},
        {"chosen", "relative", "/home/a", "chosen", {"/home/a/.local/share/TarvinDL/2026"}},
        {"", "", "", std::nullopt, {}},
        {nullptr, nullptr, nullptr, std::nullopt, {}},
    };
    for (const Case& each : cases) {
        set("TARVINDL_HOME", each.chosen);
        set("XDG_DATA_HOME", each.dataHome);
        set("HOME", each.home);
        InstallationCandidates found = SystemInstallationCandidates();
        CHECK(found.chosen == each.expectedChosen);
        REQUIRE(found.folders.size() >= 2);
        CHECK(std::filesystem::exists(found.folders.front() / "files-tests"));
        CHECK(found.folders.back() == "/var/lib/tarvindl/2026");
        CHECK(std::vector(found.folders.begin() + 1, found.folders.end() - 1) == each.expectedUser);
    }
}
