#include "harness/TemporaryInstallation.h"

#include <algorithm>

namespace tarvin::test {

TemporaryInstallation::TemporaryInstallation(const Options& options) : settingsName(options.machine + ".INI") {
    std::replace(settingsName.begin(), settingsName.end(), '/', '_');
    std::filesystem::create_directory(NcFolder());
    std::string paths = "[PROGRAM PATHS]\nNC Files=NC\n[PORTS]\nCOM1=" +
                        (options.device.empty() ? (*this / "line").string() : options.device) + "\n";
    if (!options.service.empty())
        paths += "[Service]\n" + options.service;
    WriteFile("KEL.INI", paths);
    WriteFile(settingsName, options.settings);
}

}
