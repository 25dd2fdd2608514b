#pragma once
// The command line of tarvindl-setup.

#include "setup/InstallationSetup.h"
#include "setup/SettingsChange.h"

#include <optional>
#include <span>

namespace tarvin {

struct SetupRequest {
    InstallationWish place;
    // The words that are no option, joined by blanks. Empty without any.
    KelText machine;
    // A port name, or the path of a device.
    std::optional<KelText> port;
    // By the options for single settings, by their names in a profile.
    std::vector<NamedValue> choices;
    // By --set.
    std::vector<NamedValue> changes;
    // Folders of NC files that were named; a missing one is made.
    std::vector<std::filesystem::path> folders;
    bool showsSettings = false;
    bool listsPorts = false;
    bool reloads = false;
    bool neverAsks = false;
    // Where to write the files for systemd and udev, in place of /etc.
    std::optional<std::filesystem::path> units;
};

// Reads the words of the command line. A failure says what is wrong.
Result<SetupRequest> ReadSetupOptions(std::span<const KelText> words);

}
