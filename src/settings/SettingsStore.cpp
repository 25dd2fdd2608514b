#include "settings/SettingsStore.h"

#include "base/Messages.h"
#include "files/FileNames.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <iterator>
#include <system_error>
#include <utility>

namespace tarvin {

namespace {

// Far more than settings need; whatever is longer is something else.
constexpr std::size_t maximumFileSize = 1024 * 1024;

constexpr KelTextView portSection = u"Port Settings";
constexpr KelTextView filesSection = u"Files";
constexpr KelTextView logSection = u"Log";

bool HasUsablePort(const DownloadSettings& settings) {
    return settings.port.starts_with(u"COM");
}

bool IsTextProfile(std::string_view content) {
    const Profile profile(content);
    return profile.HasSection(portSection) || profile.HasSection(filesSection) || profile.HasSection(logSection);
}

// True if replacing a file with this content loses nothing but the settings that were loaded from it.
bool IsUnderstood(std::string_view content) {
    DownloadSettings settings;
    const RecordState state = DecodeRecord(content, settings);
    return content.empty() || (state == RecordState::Whole && HasUsablePort(settings)) ||
           (state == RecordState::None && IsTextProfile(content));
}

bool Exists(const std::filesystem::path& path) {
    std::error_code ignored;
    return std::filesystem::exists(std::filesystem::symlink_status(path, ignored));
}

// Gives the file a second name, or another name where it cannot have two. `content` is none if it could not be read.
bool KeepBeside(const std::filesystem::path& file, const std::optional<std::string>& content) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
        return false;
    for (int number = 1;; ++number) {
        std::filesystem::path kept = file;
        kept += number == 1 ? ".bad" : ".bad" + std::to_string(number);
        if (Exists(kept)) {
            if (content && ReadWholeFile(kept, maximumFileSize) == content)
                return true;
            continue;
        }
        std::error_code error;
        if (content) {
            std::filesystem::create_hard_link(file, kept, error);
            if (!error)
                return true;
        }
        // One that cannot be read must go: its permissions would be handed on to the file that replaces it.
        std::filesystem::rename(file, kept, error);
        return !error;
    }
}

}

SettingsStore::SettingsStore(std::filesystem::path folder, KelText baseName, KelText defaultTransferFolder)
    : programFolder(std::move(folder)),
      settingsBaseName(std::move(baseName)),
      ncFilesFolder(std::move(defaultTransferFolder)) {}

std::filesystem::path SettingsStore::FilePath() const {
    return programFolder / ToPath(FileNameFor(settingsBaseName) + u".INI");
}

std::optional<std::string> SettingsStore::ReadFile() {
    auto content = ReadWholeFile(FilePath(), maximumFileSize);
    isUnread = isUnread || (!content && Exists(FilePath()));
    return content;
}

RecordState SettingsStore::ReadRecord(DownloadSettings& settings) {
    const auto content = ReadFile();
    return content ? DecodeRecord(*content, settings) : RecordState::None;
}

bool SettingsStore::LoadSettings(DownloadSettings& settings) {
    return ReadRecord(settings) != RecordState::None;
}

SettingsStore::LoadResult SettingsStore::Load(const DownloadSettings& constructorValues) {
    const MessageBoxText warning = {text::box::badSettings, text::box::badSettingsCaption, iconExclamation};
    LoadResult result = {constructorValues, std::nullopt};
    isUnread = false;
    RecordState state = ReadRecord(result.settings);
    if (state == RecordState::None)
        return {ReadProfile(constructorValues), std::nullopt};
    if (!HasUsablePort(result.settings)) {
        // Another program may have been writing the file just then.
        result.settings = constructorValues;
        state = ReadRecord(result.settings);
        if (state == RecordState::None || !HasUsablePort(result.settings))
            return {ReadProfile(constructorValues), warning};
    }
    if (state == RecordState::Damaged) {
        // What it has lost gets the values of a first run: without line settings there would be no link.
        result = {FromProfile(Profile(""), constructorValues), warning};
        ReadRecord(result.settings);
    }
    return result;
}

DownloadSettings SettingsStore::ReadProfile(const DownloadSettings& constructorValues) {
    return FromProfile(Profile(ReadFile().value_or("")), constructorValues);
}

DownloadSettings SettingsStore::FromProfile(const Profile& profile, const DownloadSettings& constructorValues) const {
    DownloadSettings settings = constructorValues;
    settings.port = profile.Text(portSection, u"port", u"COM1");
    settings.baudRate = profile.Text(portSection, u"baudrate", u"2400");
    settings.parity = profile.Text(portSection, u"parity", u"None");
    settings.dataBits = profile.Text(portSection, u"databits", u"8");
    settings.stopBits = profile.Text(portSection, u"stopbits", u"1");
    settings.flowControl = profile.Text(portSection, u"flow control", u"Xon/Xoff");
    settings.uploadPath = profile.Text(filesSection, u"upload path", ncFilesFolder);
    settings.downloadPath = profile.Text(filesSection, u"download path", ncFilesFolder);
    settings.fileExtension = profile.Text(filesSection, u"file extension", settings.fileExtension);
    settings.transmitDelaySeconds = profile.Integer(portSection, u"transmit delay", 2);
    settings.logFile = profile.Text(logSection, u"log file", settings.logFile);
    settings.writeLog = profile.Integer(logSection, u"write log", 0);
    return settings;
}

bool SettingsStore::SaveSettings(const DownloadSettings& settings) {
    const std::filesystem::path file = FilePath();
    const auto content = ReadFile();
    const bool losesNothing = !isUnread && (!content || IsUnderstood(*content));
    if (!losesNothing && Exists(file) && !KeepBeside(file, content))
        return false;
    if (!ReplaceWholeFile(file, EncodeRecord(settings)))
        return false;
    isUnread = false;
    return true;
}

}
