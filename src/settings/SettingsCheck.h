#pragma once
// What is wrong with settings that a user wants, in words for the user. Any thread; looks at the file system, which may
// take as long as a lost network drive takes.

#include "settings/DownloadSettings.h"

#include <vector>

namespace tarvin {

struct SettingsProblem {
    // The setting that it is about.
    KelText DownloadSettings::*field;
    KelText message;
    // The setting was so before. A drive that is away today must not keep a user from changing the baud rate, so it may
    // stay once the user has been told.
    bool mayStay;
};

// In the order in which a user sees the settings. At most one for each setting.
std::vector<SettingsProblem> CheckSettings(const DownloadSettings& wanted, const DownloadSettings& present);

// Something the user should know about the choice and may still choose; empty if there is nothing.
KelText StopBitsNote(KelTextView stopBits);

// A folder as the settings keep it: whoever opens a file in it puts the file's name directly behind.
KelText AsFolderSetting(KelText folder);

// An extension as the settings keep it: without the dot in front of it.
KelText AsExtensionSetting(KelText extension);

}
