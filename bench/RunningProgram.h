#pragma once
// One of the programs under measurement, with its line and its temporary installation. Failures throw.

#include "FrameLine.h"
#include "MeasuredProcess.h"
#include "harness/TemporaryInstallation.h"

#include <filesystem>
#include <string>

namespace tarvin::bench {

inline constexpr char serviceProgram[] = "tarvindl-service";
inline constexpr char desktopProgram[] = "tarvindl";
inline constexpr char machineName[] = "TARVIN";

// An installation whose machine has default settings without a transmit delay, on the device of `line`.
// `serviceEntries` are lines of the section "Service" of KEL.INI.
test::TemporaryInstallation MakeInstallation(const FrameLine& line, const std::string& serviceEntries = {});

// A program that runs and has answered a link test.
struct RunningProgram {
    explicit RunningProgram(const std::string& programName, const std::string& serviceEntries = {});

    // The path under which the program looks for the NC file with this number.
    std::filesystem::path NcFile(const std::string& number) const { return installation.NcFolder() / (number + "."); }

    FrameLine line;
    test::TemporaryInstallation installation;
    MeasuredProcess process;
};

// Repeats the link test every millisecond until the program answers, because bytes that arrive before the program has
// opened its port are lost. More answers may follow the first one.
void AwaitLink(FrameLine& line);

// Like AwaitLink, and then drops the answers that follow.
void EstablishLink(FrameLine& line);

}
