#pragma once
// Checks the settings that a user enters, and describes each problem for the user. Any thread. CheckSettings accesses
// the file system, and blocks as long as a lost network drive does.

#include "settings/DownloadSettings.h"

#include <variant>
#include <vector>

namespace tarvin {

using TextSetting = KelText DownloadSettings::*;
using NumberSetting = std::int32_t DownloadSettings::*;
using AnySetting = std::variant<TextSetting, NumberSetting>;

struct SettingsProblem {
    // The setting with the problem.
    AnySetting field;
    KelText message;
    // The setting has not changed, so the user may keep it after a warning. A drive that is away today must not prevent
    // a change of the baud rate.
    bool mayStay;
};

// The problems of texts in the order in which the window shows them, then those of numbers. At most one for each
// setting.
std::vector<SettingsProblem> CheckSettings(const DownloadSettings& wanted, const DownloadSettings& present);

// The highest value that a user may enter. The lowest one is 0. Requires a setting that the user enters as a number.
int HighestNumber(NumberSetting setting);

// What is wrong with a number for this setting, which the user is still entering. Empty for a good one.
KelText NumberProblem(NumberSetting setting, std::int64_t number);

// Whether the setting changes anything with the kind of controller and the other choices in `settings`.
bool HasEffect(NumberSetting setting, const DownloadSettings& settings);

// A note about a choice that the user may make but should know about. Empty for all others.
KelText StopBitsNote(KelTextView stopBits);

// The folder as the settings keep it: with a separator at the end, so that a file's name can follow. An empty one stays
// empty.
KelText AsFolderSetting(KelText folder);

// The extension as the settings keep it: without the dots in front.
KelText AsExtensionSetting(KelText extension);

}
