#pragma once
// The file with one machine's settings: a record, or a text profile that an older release or a person has written. One
// thread at a time. All operations block for the disk. None throws, whatever the file holds.

#include "base/Result.h"
#include "messages/MessageReport.h"
#include "settings/SettingsRecord.h"

#include <filesystem>
#include <functional>
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
        // The bytes of the file. None if there is no file, or none that can be read.
        std::optional<std::string> content = std::nullopt;
        // The file holds neither a record nor a profile with settings: the settings are those of a first run.
        bool isForeign = false;
    };

    // Alters settings, or says why it does not.
    using Change = std::function<Result<>(DownloadSettings&)>;

    // The file is in `folder` and named after the machine. `transferFolder` is the upload and download path of a
    // machine that has no settings yet.
    SettingsStore(std::filesystem::path folder, KelText machineName, KelText transferFolder);

    std::filesystem::path FilePath() const;

    // The settings to start with: from the record if it is usable, else from the text profile, else the values of a
    // first run. Settings that none of these has keep the values of `constructorValues`. A record is usable if its port
    // is a COM port. The port of a profile may be written in any case.
    LoadResult Load(const DownloadSettings& constructorValues);

    // What Load would give now, without an effect on this object. Any thread, once Load has returned for the first time
    // and as long as no thread calls ChangeSettings.
    LoadResult ReadAgain() const { return Understand(ReadFile()); }

    // The settings in use now agree with a file that ReadAgain has given: a later save does not take that file for one
    // that was changed meanwhile.
    void NoteLoaded(const LoadResult& loaded);

    // `inUse` with what other programs have changed in the file since the last Load, NoteLoaded or SaveSettings, if
    // `loaded` is what the file holds now.
    DownloadSettings WithChangesOf(const LoadResult& loaded, const DownloadSettings& inUse) const;

    // Reads the record once, as far as it is undamaged. False, with `settings` unchanged, if the file cannot be read or
    // does not begin with a record.
    bool LoadSettings(DownloadSettings& settings);

    // Replaces the file in one step, and returns when the settings are on the disk. If this would lose content, it
    // first keeps the old file as "<name>.bad" ("<name>.bad2" ...): content that is neither settings nor a profile of
    // this program, or is damaged. Fails, and leaves the file as it is, if the old file cannot be kept, or if the
    // system refuses to open or read it, now or at the last Load.
    //
    // Settings that another program has changed in the file since the last Load stay changed: of `settings` the file
    // gets what differs from that Load.
    //
    // Waits for programs that change settings of this installation at the same moment, 1 s at most.
    Result<> SaveSettings(const DownloadSettings& settings);

    // Lets `change` alter the settings in the file, and replaces the file in one step if it has. Gives whether it has.
    // A profile stays a profile with all its other lines, and a missing file becomes one if it can hold the values.
    // `firstValues` are the constructor's values of Load. Keeps a file beside it, fails and waits like SaveSettings; a
    // failure of `change`, and a value that the profile cannot hold, are failures too, and the file stays as it is.
    Result<bool> ChangeSettings(const DownloadSettings& firstValues, const Change& change);

    // The failure that ChangeSettings would give now, without a change of the file. Says nothing about the disk.
    Result<> TryChange(const DownloadSettings& firstValues, const Change& change);

private:
    enum class FileState { Missing, Refused, TooLong, Read };
    struct FoundFile {
        FileState state;
        std::string content; // empty unless the state is Read
        Error reason;        // of a refusal
    };

    // The bytes that the file would get; none if it can stay as it is.
    using NewContent = std::optional<std::string>;

    FoundFile ReadFile() const;
    Result<NewContent> ContentAfter(const FoundFile& found, const Change& change) const;
    LoadResult Understand(FoundFile found) const;
    DownloadSettings FromProfile(const Profile& profile) const;
    Result<> KeepIfLost(const FoundFile& found) const;
    std::filesystem::path FileOfLock() const;

    std::filesystem::path folder;
    KelText machineName;
    KelText transferFolder;
    DownloadSettings firstValues;
    // The file as it was at the last Load or save, and its settings.
    std::optional<std::string> seenContent;
    DownloadSettings seenSettings;
    bool wasLoaded = false;
    // The system refused the file at the last Load, so the settings in use are not its own.
    bool wasRefused = false;
};

}
