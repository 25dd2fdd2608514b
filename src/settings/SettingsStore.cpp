#include "settings/SettingsStore.h"

#include "base/Messages.h"
#include "files/FileNames.h"
#include "files/FileReplacement.h"
#include "files/NativeFile.h"
#include "files/Profile.h"
#include "messages/MessageAdvice.h"

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

// The name of a COM port in upper case, as records hold it.
KelText PortFromProfile(KelText port) {
    if (EqualIgnoringCase(KelTextView(port).substr(0, 3), u"COM"))
        std::transform(port.begin(), port.end(), port.begin(), ToUpperAscii);
    return port;
}

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
    const MessageBoxText warning =
        WithAdvice(MessageKind::BadSettings, {text::box::badSettings, text::box::badSettingsCaption, iconExclamation});
    FoundFile found = ReadFile();
    wasRefused = found.state == FileState::Refused;
    if (wasRefused) {
        const KelText refusal = Filled(text::box::settingsNotRead, {FromPath(FilePath()), found.reason.text});
        return {FromProfile(Profile(""), constructorValues),
                WithAdvice(MessageKind::SettingsNotRead, {refusal, text::box::badSettingsCaption, iconExclamation}),
                true};
    }
    LoadResult result = {constructorValues, std::nullopt};
    RecordState state = DecodeRecord(found.content, result.settings);
    if (state == RecordState::None)
        return {FromProfile(Profile(found.content), constructorValues), std::nullopt};
    if (!HasUsablePort(result.settings)) {
        // Another program may have been writing the file at that moment, so it is read a second time.
        found = ReadFile();
        result.settings = constructorValues;
        state = DecodeRecord(found.content, result.settings);
        if (state == RecordState::None || !HasUsablePort(result.settings))
            return {FromProfile(Profile(found.content), constructorValues), warning};
    }
    if (state == RecordState::Damaged) {
        // The lost fields get the values of a first run. Without line settings the port could not be opened.
        result = {FromProfile(Profile(""), constructorValues), warning};
        DecodeRecord(found.content, result.settings);
    }
    return result;
}

DownloadSettings SettingsStore::FromProfile(const Profile& profile, const DownloadSettings& constructorValues) const {
    DownloadSettings settings = constructorValues;
    settings.port = PortFromProfile(profile.Text(portSection, u"port", u"COM1"));
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
    const FoundFile found = ReadFile();
    if (found.state == FileState::Refused)
        return found.reason;
    if (wasRefused && found.state != FileState::Missing)
        return Error{text::settingsReason::notReadBefore};
    const bool isRead = found.state == FileState::Read;
    if (found.state == FileState::TooLong || (isRead && !IsUnderstood(found.content))) {
        if (const auto kept = KeepBeside(file, isRead ? std::optional(found.content) : std::nullopt); !kept)
            return kept;
    }
    return ReplaceWholeFile(file, EncodeRecord(settings));
}

}
