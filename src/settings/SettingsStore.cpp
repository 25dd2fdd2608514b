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

// Settings need a few hundred bytes. A longer file is something else.
constexpr std::size_t maximumFileSize = 1024 * 1024;

constexpr KelTextView portSection = u"Port Settings";
constexpr KelTextView filesSection = u"Files";
constexpr KelTextView logSection = u"Log";

// A record that another program has damaged or is writing mostly shows it here.
bool HasUsablePort(const DownloadSettings& settings) {
    return settings.port.starts_with(u"COM");
}

bool IsTextProfile(std::string_view content) {
    const Profile profile(content);
    return profile.HasSection(portSection) || profile.HasSection(filesSection) || profile.HasSection(logSection);
}

// True if the content is nothing but settings, so that new settings may replace it.
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

// Keeps the file under a second name: as a link, or renamed where links are impossible. `content` is none if the file
// could not be read.
Result<> KeepBeside(const std::filesystem::path& file, const std::optional<std::string>& content) {
    std::error_code ignored;
    if (std::filesystem::is_directory(file, ignored))
        return Error{FromPath(file) + u" is a folder"};
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
        std::error_code error;
        if (content) {
            std::filesystem::create_hard_link(file, kept, error);
            if (!error)
                return {};
        }
        // An unreadable file is always renamed. The file that replaces it would otherwise take over its permissions.
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

std::optional<std::string> SettingsStore::ReadFile() {
    auto content = ReadWholeFile(FilePath(), maximumFileSize);
    if (content)
        return std::move(*content);
    isUnread = isUnread || Exists(FilePath());
    return std::nullopt;
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
        // Another program may have been writing the file at that moment, so it is read a second time.
        result.settings = constructorValues;
        state = ReadRecord(result.settings);
        if (state == RecordState::None || !HasUsablePort(result.settings))
            return {ReadProfile(constructorValues), warning};
    }
    if (state == RecordState::Damaged) {
        // The lost fields get the values of a first run. Without line settings the port could not be opened.
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
    settings.uploadPath = profile.Text(filesSection, u"upload path", transferFolder);
    settings.downloadPath = profile.Text(filesSection, u"download path", transferFolder);
    settings.fileExtension = profile.Text(filesSection, u"file extension", settings.fileExtension);
    settings.transmitDelaySeconds = profile.Integer(portSection, u"transmit delay", 2);
    settings.logFile = profile.Text(logSection, u"log file", settings.logFile);
    settings.writeLog = profile.Integer(logSection, u"write log", 0);
    return settings;
}

Result<> SettingsStore::SaveSettings(const DownloadSettings& settings) {
    const std::filesystem::path file = FilePath();
    const auto content = ReadFile();
    const bool losesNothing = !isUnread && (!content || IsUnderstood(*content));
    if (!losesNothing && Exists(file)) {
        if (const auto kept = KeepBeside(file, content); !kept)
            return kept;
    }
    if (const auto replaced = ReplaceWholeFile(file, EncodeRecord(settings)); !replaced)
        return replaced;
    isUnread = false;
    return {};
}

}
