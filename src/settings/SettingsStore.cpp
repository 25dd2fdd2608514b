#include "settings/SettingsStore.h"

#include "base/Messages.h"
#include "base/SetupMessages.h"
#include "files/FileHold.h"
#include "files/FileNames.h"
#include "files/FileReplacement.h"
#include "files/NativeFile.h"
#include "files/Profile.h"
#include "messages/MessageAdvice.h"
#include "settings/SettingsFields.h"
#include "settings/SettingsNames.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

// Settings need a few hundred bytes. A longer file is something else.
constexpr std::size_t maximumFileSize = 1024 * 1024;

constexpr auto longestHoldWait = std::chrono::seconds(1);

// A record that another program has damaged or is writing mostly shows it here.
bool HasUsablePort(const DownloadSettings& settings) {
    return settings.port.starts_with(u"COM");
}

bool IsTextProfile(std::string_view content) {
    return HasSettings(Profile(content));
}

// True if the content is nothing but settings, so that new settings may replace it.
bool IsUnderstood(std::string_view content) {
    DownloadSettings settings;
    const RecordState state = DecodeRecord(content, settings);
    return content.empty() || (state == RecordState::Whole && HasUsablePort(settings)) ||
           (state == RecordState::None && IsTextProfile(content));
}

// The name of a setting that differs. Empty without one.
KelText NameOfDifference(const DownloadSettings& left, const DownloadSettings& right) {
    for (const NamedSetting& each : NamedSettings()) {
        if (SettingValue(each, left) != SettingValue(each, right))
            return KelText(each.key);
    }
    return {};
}

bool Exists(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

Result<> WriteCopy(const std::filesystem::path& copy, std::string_view content) {
    NativeFile file;
    Result<> done = file.Open(copy, NativeFile::Access::Create);
    if (done)
        done = file.Write(content);
    if (done)
        done = file.Sync();
    return done;
}

// Keeps the file under a second name: as a link, or renamed where links are impossible. Saving replaces the file that a
// symbolic link leads to, so the second name is one for that file, or for a copy. `content` is none if the file is too
// long to be read.
Result<> KeepBeside(const std::filesystem::path& file, const std::optional<std::string>& content) {
    std::error_code error;
    for (int number = 1;; ++number) {
        std::filesystem::path kept = file;
        kept += number == 1 ? ".bad" : ".bad" + std::to_string(number);
        if (Exists(kept)) {
            // A file that comes back with the same content needs one copy.
            const auto present = ReadWholeFile(kept, maximumFileSize);
            if (content && present && *present == *content)
                return {};
            continue;
        }
        std::filesystem::create_hard_link(WithoutLinks(file), kept, error);
        if (!error)
            return {};
        if (content && std::filesystem::is_symlink(file, error))
            return WriteCopy(kept, *content);
        std::filesystem::rename(file, kept, error);
        if (error)
            return Error{FromUtf8(error.message())};
        return {};
    }
}

}

SettingsStore::SettingsStore(std::filesystem::path folder, KelText machineName, KelText transferFolder)
    : folder(std::move(folder)), machineName(std::move(machineName)), transferFolder(std::move(transferFolder)) {}

std::filesystem::path SettingsStore::FilePath() const {
    return folder / ToPath(FileNameFor(machineName) + u".INI");
}

SettingsStore::FoundFile SettingsStore::ReadFile() const {
    auto content = ReadStartOfFile(FilePath(), maximumFileSize + 1);
    if (!content)
        return {Exists(FilePath()) ? FileState::Refused : FileState::Missing, {}, content.Reason()};
    if (content->size() > maximumFileSize)
        return {FileState::TooLong, {}, {}};
    return {FileState::Read, std::move(*content), {}};
}

bool SettingsStore::LoadSettings(DownloadSettings& settings) {
    return DecodeRecord(ReadFile().content, settings) != RecordState::None;
}

SettingsStore::LoadResult SettingsStore::Load(const DownloadSettings& constructorValues) {
    firstValues = constructorValues;
    LoadResult loaded = Understand(ReadFile());
    NoteLoaded(loaded);
    return loaded;
}

void SettingsStore::NoteLoaded(const LoadResult& loaded) {
    seenContent = loaded.content;
    seenSettings = loaded.settings;
    wasRefused = loaded.isRefused;
    wasLoaded = true;
}

DownloadSettings SettingsStore::WithChangesOf(const LoadResult& loaded, const DownloadSettings& inUse) const {
    return MergedSettings(inUse, seenSettings, loaded.settings);
}

SettingsStore::LoadResult SettingsStore::Understand(FoundFile found) const {
    const MessageBoxText warning =
        WithAdvice(MessageKind::BadSettings, {text::box::badSettings, text::box::badSettingsCaption, iconExclamation});
    if (found.state == FileState::Refused) {
        const KelText refusal = Filled(text::box::settingsNotRead, {FromPath(FilePath()), found.reason.text});
        return {FromProfile(Profile("")),
                WithAdvice(MessageKind::SettingsNotRead, {refusal, text::box::badSettingsCaption, iconExclamation}),
                true};
    }
    const auto contentOf = [](const FoundFile& file) {
        return file.state == FileState::Read ? std::optional(file.content) : std::nullopt;
    };
    LoadResult result = {firstValues, std::nullopt, false, contentOf(found)};
    RecordState state = DecodeRecord(found.content, result.settings);
    if (state == RecordState::None) {
        const Profile profile(found.content);
        const bool isForeign = found.state == FileState::TooLong || (!found.content.empty() && !HasSettings(profile));
        return {FromProfile(profile), std::nullopt, false, contentOf(found), isForeign};
    }
    if (!HasUsablePort(result.settings)) {
        // Another program may have been writing the file at that moment, so it is read a second time.
        found = ReadFile();
        result.settings = firstValues;
        result.content = contentOf(found);
        state = DecodeRecord(found.content, result.settings);
        if (state == RecordState::None || !HasUsablePort(result.settings))
            return {FromProfile(Profile(found.content)), warning, false, contentOf(found)};
    }
    if (state == RecordState::Damaged) {
        // The lost fields get the values of a first run. Without line settings the port could not be opened.
        result = {FromProfile(Profile("")), warning, false, contentOf(found)};
        DecodeRecord(found.content, result.settings);
    }
    return result;
}

DownloadSettings SettingsStore::FromProfile(const Profile& profile) const {
    DownloadSettings settings = firstValues;
    settings.port = u"COM1";
    settings.baudRate = u"2400";
    settings.parity = u"None";
    settings.dataBits = u"8";
    settings.stopBits = u"1";
    settings.flowControl = u"Xon/Xoff";
    settings.uploadPath = transferFolder;
    settings.downloadPath = transferFolder;
    settings.transmitDelaySeconds = 2;
    settings.writeLog = 0;
    return SettingsFromProfile(profile, std::move(settings));
}

// The installation's paths file: it is always there, and the settings file itself is replaced at each save.
std::filesystem::path SettingsStore::FileOfLock() const {
    return folder / "KEL.INI";
}

Result<> SettingsStore::KeepIfLost(const FoundFile& found) const {
    const bool isRead = found.state == FileState::Read;
    if (found.state != FileState::TooLong && (!isRead || IsUnderstood(found.content)))
        return {};
    return KeepBeside(FilePath(), isRead ? std::optional(found.content) : std::nullopt);
}

Result<> SettingsStore::SaveSettings(const DownloadSettings& settings) {
    // Settings are saved too where nothing can be locked.
    NativeFile held;
    (void)HoldFile(held, FileOfLock(), longestHoldWait);
    const FoundFile found = ReadFile();
    if (found.state == FileState::Refused)
        return found.reason;
    if (wasRefused && found.state != FileState::Missing)
        return Error{text::settingsReason::notReadBefore};
    DownloadSettings saved = settings;
    const bool isChanged = wasLoaded && found.state == FileState::Read && found.content != seenContent;
    if (isChanged && IsUnderstood(found.content))
        saved = WithChangesOf(Understand(found), settings);
    if (const auto kept = KeepIfLost(found); !kept)
        return kept;
    std::string content = EncodeRecord(saved);
    auto done = ReplaceWholeFile(FilePath(), content);
    if (done) {
        seenContent = std::move(content);
        seenSettings = std::move(saved);
    }
    return done;
}

Result<SettingsStore::NewContent> SettingsStore::ContentAfter(const FoundFile& found, const Change& change) const {
    if (found.state == FileState::Refused)
        return Error{Filled(text::setup::cannotRead, {FromPath(FilePath()), found.reason.text})};
    const LoadResult loaded = Understand(found);
    DownloadSettings changed = loaded.settings;
    if (const auto done = change(changed); !done)
        return done.Reason();
    if (changed == loaded.settings && found.state == FileState::Read && !loaded.warning && !loaded.isForeign)
        return NewContent();
    DownloadSettings before = loaded.settings;
    const bool isProfile = DecodeRecord(found.content, before) == RecordState::None && IsTextProfile(found.content);
    if (found.content.empty() || isProfile) {
        // A new profile names its port, so that it shows where the machine is.
        if (found.content.empty())
            before.port.clear();
        std::string profile = WithSettings(found.content, before, changed);
        const DownloadSettings result = FromProfile(Profile(profile));
        if (result == changed)
            return NewContent(std::move(profile));
        // A record would hold the value, and lose the comments of the person who keeps the profile.
        if (const KelText name = NameOfDifference(result, changed); isProfile && !name.empty())
            return Error{Filled(text::setup::notInProfile, {name, FromPath(FilePath())})};
    }
    return NewContent(EncodeRecord(changed));
}

Result<> SettingsStore::TryChange(const DownloadSettings& constructorValues, const Change& change) {
    firstValues = constructorValues;
    const auto content = ContentAfter(ReadFile(), change);
    return content ? Result<>() : content.Reason();
}

Result<bool> SettingsStore::ChangeSettings(const DownloadSettings& constructorValues, const Change& change) {
    NativeFile held;
    (void)HoldFile(held, FileOfLock(), longestHoldWait);
    firstValues = constructorValues;
    const FoundFile found = ReadFile();
    const auto content = ContentAfter(found, change);
    if (!content)
        return content.Reason();
    if (!*content)
        return false;
    if (const auto kept = KeepIfLost(found); !kept)
        return kept.Reason();
    if (const auto replaced = ReplaceWholeFile(FilePath(), **content); !replaced)
        return Error{Filled(text::setup::cannotWrite, {FromPath(FilePath()), replaced.Reason().text})};
    return true;
}

}
