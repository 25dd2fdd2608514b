#include "framework/ProgramPaths.h"

#include <map>
#include <string>

#include <doctest/doctest.h>
#include <stdlib.h>

using namespace tarvin;

namespace {

// The variables that the look-up reads, put back when the test ends.
class Environment {
public:
    Environment() {
        for (const char* name : {"TARVINDL_HOME", "XDG_DATA_HOME", "HOME"}) {
            const char* const value = ::getenv(name);
            before[name] = value == nullptr ? std::nullopt : std::optional<std::string>(value);
        }
    }
    ~Environment() {
        for (const auto& [name, value] : before)
            Set(name.c_str(), value ? value->c_str() : nullptr);
    }

    static void Set(const char* name, const char* value) {
        if (value == nullptr)
            ::unsetenv(name);
        else
            ::setenv(name, value, 1);
    }

private:
    std::map<std::string, std::optional<std::string>> before;
};

}

TEST_CASE("the environment names the chosen and the user's folder, and what it says amiss is passed over") {
    const Environment restored;
    struct Case {
        const char* chosen;
        const char* dataHome;
        const char* home;
        const char* user; // null where there is none
    };
    const Case cases[] = {
        {"/chosen", "/data", "/home/a", "/data/TarvinDL/2026"},
        {nullptr, nullptr, "/home/a", "/home/a/.local/share/TarvinDL/2026"},
        {nullptr, "relative", "/home/a", "/home/a/.local/share/TarvinDL/2026"},
        {"", "", "", nullptr},
        {"relative", nullptr, nullptr, nullptr},
    };
    for (const Case& each : cases) {
        Environment::Set("TARVINDL_HOME", each.chosen);
        Environment::Set("XDG_DATA_HOME", each.dataHome);
        Environment::Set("HOME", each.home);
        const InstallationCandidates found = SystemInstallationCandidates();
        const bool isChosen = each.chosen != nullptr && *each.chosen != '\0';
        CHECK(found.chosen == (isChosen ? std::optional<std::filesystem::path>(each.chosen) : std::nullopt));
        REQUIRE(found.folders.size() == (each.user != nullptr ? 3 : 2));
        CHECK(std::filesystem::exists(found.folders.front() / "framework-tests"));
        if (each.user != nullptr)
            CHECK(found.folders[1] == each.user);
        CHECK(found.folders.back() == "/var/lib/tarvindl/2026");
    }
}
