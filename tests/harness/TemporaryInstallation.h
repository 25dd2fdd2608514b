#pragma once
// A temporary folder that is an installation of the program for one machine: KEL.INI, the settings file and the folder
// "NC" for NC files. The machine's port COM1 leads to a device. Failures throw.

#include "harness/TemporaryFolder.h"

#include <string>

namespace tarvin::test {

class TemporaryInstallation : public TemporaryFolder {
public:
    struct Options {
        std::string machine = "LASER";
        // The settings file in text form.
        std::string settings = "[Port Settings]\ntransmit delay=0\nflow control=None\n[Files]\nfile extension=nc\n";
        // Empty: the name "line" in the folder, where the test puts a link to a device.
        std::string device = {};
        // Lines of the section "Service" of KEL.INI.
        std::string service = {};
    };

    TemporaryInstallation() : TemporaryInstallation(Options()) {}
    explicit TemporaryInstallation(const Options& options);

    std::filesystem::path NcFolder() const { return *this / "NC"; }
    // The name of the machine's settings file.
    const std::string& SettingsName() const { return settingsName; }

private:
    std::string settingsName;
};

}
