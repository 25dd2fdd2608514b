#pragma once
// The settings by their names in a text profile: for the profile itself, and for commands that show and set them. Any
// thread; does not access the disk.

#include "base/Result.h"
#include "settings/SettingsCheck.h"

#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace tarvin {

class Profile;

// How the value of a setting is written.
enum class SettingForm { Port, Choice, Word, Text, Folder, Extension, Number, Flag, Character };

struct NamedSetting {
    using Field = std::variant<TextSetting, NumberSetting, std::uint8_t DownloadSettings::*>;

    KelTextView section;
    KelTextView key; // no two settings have the same
    Field field;
    SettingForm form;
    // For Choice the values; for Word the words for 0, 1, 2 ...
    std::span<const KelTextView> words = {};
};

// In the order of a profile: settings of one section stand together.
std::span<const NamedSetting> NamedSettings();

// The name is compared without case. Null if no setting has it.
const NamedSetting* FindNamedSetting(KelTextView name);

// The name of the setting that CheckSettings has found a problem with. Empty if it has none.
KelText SettingName(const AnySetting& field);

// The value as a profile holds it, without quotes.
KelText SettingValue(const NamedSetting& setting, const DownloadSettings& settings);

// Sets one setting to a value that a user has entered. Fails, with the values that are allowed, if it has another form.
// Whether a folder exists is up to CheckSettings.
Result<> SetNamedSetting(const NamedSetting& setting, KelTextView value, DownloadSettings& settings);

// The settings that the profile has. Texts end after 79 characters. The others keep the values of `others`.
DownloadSettings SettingsFromProfile(const Profile& profile, DownloadSettings others);

// Whether the profile has a section with settings.
bool HasSettings(const Profile& profile);

// All settings as a profile.
KelText ProfileOfSettings(const DownloadSettings& settings);

// The profile `fileBytes`, which holds the settings `before`, with the values of `after` where they differ. Keeps every
// other byte. A value that the profile cannot hold is cut or changed: the caller reads the result again.
std::string WithSettings(std::string fileBytes, const DownloadSettings& before, const DownloadSettings& after);

}
