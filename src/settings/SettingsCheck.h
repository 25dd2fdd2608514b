#pragma once
// Checks the settings that a user enters, and describes each problem for the user. Any thread. CheckSettings accesses
// the file system, and blocks as long as a lost network drive does.

#include "settings/DownloadSettings.h"

#include <vector>

namespace tarvin {

struct SettingsProblem {
    // The setting with the problem.
    KelText DownloadSettings::*field;
    KelText message;
    // The setting has not changed, so the user may keep it after a warning. A drive that is away today must not prevent
    // a change of the baud rate.
    bool mayStay;
};

// The problems in the order in which the window shows the settings. At most one for each setting.
std::vector<SettingsProblem> CheckSettings(const DownloadSettings& wanted, const DownloadSettings& present);

// A note about a choice that the user may make but should know about. Empty for all others.
KelText StopBitsNote(KelTextView stopBits);

// The folder as the settings keep it: with a separator at the end, so that a file's name can follow. An empty one stays
// empty.
KelText AsFolderSetting(KelText folder);

// The extension as the settings keep it: without the dots in front.
KelText AsExtensionSetting(KelText extension);

}
