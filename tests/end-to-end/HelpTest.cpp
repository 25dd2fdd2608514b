#include "harness/ChildProcessPosix.h"

#include <set>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin::test;

TEST_CASE("Help: the help of each program fits a screen and names its options") {
    constexpr std::size_t screenLines = 24;
    constexpr std::size_t screenColumns = 80;
    const std::set<std::string> programsWithTexts = {"tarvindl", "tarvindl-service", "tarvindl-start"};
    int count = 0;
    std::istringstream programs(TARVIN_PROGRAMS);
    for (std::string name; programs >> name; ++count) {
        CAPTURE(name);
        ChildProcess program(name, {{"--help"}});
        CHECK(program.WaitForExit() == 0);
        const std::string help = program.Output();
        CHECK(help.starts_with("Usage: " + name));
        std::size_t lineCount = 0;
        std::istringstream lines(help);
        for (std::string line; std::getline(lines, line); ++lineCount)
            CHECK_MESSAGE(line.size() <= screenColumns, line);
        CHECK(lineCount <= screenLines);
        for (const char* option : {"--help", "--version"})
            CHECK_MESSAGE(help.find(option) != std::string::npos, option);
        CHECK((help.find("/l=") != std::string::npos) == programsWithTexts.contains(name));
    }
    CHECK(count >= 5);
}
