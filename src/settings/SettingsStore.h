#pragma once
// The file that one machine's settings are kept in: a record, or a text profile that an older release or a person has
// written. Knows nothing of what the settings mean, but for the port, which tells whether a record is sound.
// One thread at a time. All operations wait for the disk; none throws for what it finds there.

#include "messages/MessageReport.h"
#include "settings/SettingsRecord.h"

#include <filesystem>
#include <optional>
#include <string>

namespace tarvin {

class Profile;

class SettingsStore {
public:
    struct LoadResult {
        DownloadSettings settings;
        // For the caller to show.
        std::optional<MessageBoxText> warning;
    };

    // `baseName` is the machine's name. `defaultTransferFolder` is where files go as long as no settings say otherwise.
    SettingsStore(std::filesystem::path folder, KelText baseName, KelText defaultTransferFolder);

    std::filesystem::path FilePath() const;

    // The settings to start with. From the record if there is a sound one, else from the text profile with its own
    // defaults; what neither gives has the value that `constructorValues` has.
    LoadResult Load(const DownloadSettings& constructorValues);

    // Reads the record once. False, with `settings` as they were, if the file cannot be read or begins with anything
    // else. A damaged record is read as far as it goes and is no error.
    bool LoadSettings(DownloadSettings& settings);

    // Replaces the file in one step. A file whose content would be lost, because it is not what this program writes or
    // reads or could not be read on loading, is first kept beside as "<name>.bad" ("<name>.bad2" ...); where that
    // fails, nothing is saved. False if the settings are not on the disk afterwards.
    bool SaveSettings(const DownloadSettings& settings);

private:
    std::optional<std::string> ReadFile();
    RecordState ReadRecord(DownloadSettings& settings);
    DownloadSettings ReadProfile(const DownloadSettings& constructorValues);
    DownloadSettings FromProfile(const Profile& profile, const DownloadSettings& constructorValues) const;

    std::filesystem::path programFolder;
    KelText settingsBaseName;
    KelText ncFilesFolder;
    // The file was there but could not be read: what is in use did not come from it.
    bool isUnread = false;
};

}
