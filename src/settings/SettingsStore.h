#pragma once
// The file with one machine's settings: a record, or a text profile that an older release or a person has written. One
// thread at a time. All operations block for the disk. None throws, whatever the file holds.

#include "base/Result.h"
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
        // The system refuses to open or read the file: the settings are those of a first run.
        bool isRefused = false;
    };

    // The file is in `folder` and named after the machine. `transferFolder` is the upload and download path of a
    // machine that has no settings yet.
    SettingsStore(std::filesystem::path folder, KelText machineName, KelText transferFolder);

    std::filesystem::path FilePath() const;

    // The settings to start with: from the record if it is usable, else from the text profile, else the values of a
    // first run. Settings that none of these has keep the values of `constructorValues`. A record is usable if its port
    // is a COM port. The port of a profile may be written in any case.
    LoadResult Load(const DownloadSettings& constructorValues);

    // Reads the record once, as far as it is undamaged. False, with `settings` unchanged, if the file cannot be read or
    // does not begin with a record.
    bool LoadSettings(DownloadSettings& settings);

    // Replaces the file in one step, and returns when the settings are on the disk. If this would lose content, it
    // first keeps the old file as "<name>.bad" ("<name>.bad2" ...): content that is neither settings nor a profile of
    // this program, or is damaged. Fails, and leaves the file as it is, if the old file cannot be kept, or if the
    // system refuses to open or read it, now or at the last Load.
    Result<> SaveSettings(const DownloadSettings& settings);

private:
    enum class FileState { Missing, Refused, TooLong, Read };
    struct FoundFile {
        FileState state;
        std::string content; // empty unless the state is Read
        Error reason;        // of a refusal
    };

    FoundFile ReadFile() const;
    DownloadSettings FromProfile(const Profile& profile, const DownloadSettings& constructorValues) const;

    std::filesystem::path folder;
    KelText machineName;
    KelText transferFolder;
    // The system refused the file at the last Load, so the settings in use are not its own.
    bool wasRefused = false;
};

}
