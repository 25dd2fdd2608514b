#pragma once
// A temporary installation of the program for one machine whose port is the given device, and a program that runs on
// it. The folder is gone when the installation ends.

#include "ChildProcess.h"
#include "ControllerLine.h"

#include <filesystem>
#include <string>

namespace tarvin::bench {

class Installation {
public:
    // `serviceSettings` are the lines of the section for the service program.
    explicit Installation(const std::string& devicePath, const std::string& serviceSettings = {});
    ~Installation();
    Installation(const Installation&) = delete;
    Installation& operator=(const Installation&) = delete;

    const std::filesystem::path& Folder() const { return folder; }
    // Where the program looks for the NC file with this number.
    std::filesystem::path NcFile(const std::string& number) const { return folder / "NC" / (number + "."); }

private:
    std::filesystem::path folder;
};

inline constexpr char serviceProgram[] = "tarvindl-service";
inline constexpr char desktopProgram[] = "tarvindl";

// One of the programs, running on a line and an installation of its own, its link established.
struct RunningProgram {
    explicit RunningProgram(const std::string& programName, const std::string& serviceSettings = {});

    ControllerLine line;
    Installation installation;
    ChildProcess process;
};

// Repeats the link test every millisecond until it is answered: what arrives before the program has opened its port is
// lost. Returns when the first answer is there; more may follow.
void AwaitLink(ControllerLine& line);

// AwaitLink, and then a line without an answer on its way.
void EstablishLink(ControllerLine& line);

}
