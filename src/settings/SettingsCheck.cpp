#include "settings/SettingsCheck.h"

#include "base/SettingsMessages.h"
#include "files/FileNames.h"
#include "settings/SettingsChoices.h"

#include <algorithm>
#include <array>
#include <cassert>
#include <utility>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

struct NumberRange {
    NumberSetting setting;
    int highest;
};

constexpr std::array numberRanges = {
    NumberRange{&DownloadSettings::characterDelayMilliseconds, longestCharacterDelayMilliseconds},
    NumberRange{&DownloadSettings::lineDelayMilliseconds, longestLineDelayMilliseconds},
    NumberRange{&DownloadSettings::transmitDelaySeconds, longestTransmitDelaySeconds},
    NumberRange{&DownloadSettings::replacedFilesKept, mostReplacedFilesKept},
    NumberRange{&DownloadSettings::silenceSeconds, longestSilenceSeconds},
    NumberRange{&DownloadSettings::attentionMinutes, longestAttentionMinutes},
    NumberRange{&DownloadSettings::historyYears, longestHistoryYears},
    NumberRange{&DownloadSettings::newFilesPerHour, mostNewFilesPerHour},
};

// Each of these gives the problem in words for the user, or an empty text.
KelText FolderProblem(const KelText& folder) {
    if (Trimmed(folder).empty())
        return text::setting::folderNeeded;
    std::error_code error;
    const fs::file_status status = fs::status(ToPath(folder), error);
    if (!fs::exists(status))
        return text::setting::folderMissing;
    return fs::is_directory(status) ? KelText() : text::setting::notFolder;
}

KelText ExtensionProblem(const KelText& extension) {
    // As part of a whole name: "con" is no file name, but a good extension.
    const KelText name = u"x." + extension;
    if (extension.empty() || FileNameFor(name) == name)
        return {};
    return text::setting::badExtension;
}

KelText LogFileProblem(const KelText& file) {
    if (Trimmed(file).empty())
        return text::setting::logFileNeeded;
    const fs::path path = ToPath(file);
    std::error_code error;
    // A path that ends with a separator names a folder, even if none is there yet.
    if (!path.has_filename() || fs::is_directory(path, error))
        return text::setting::logFileIsFolder;
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    return fs::is_directory(folder, error) ? KelText() : text::setting::logFolderMissing;
}

}

std::vector<SettingsProblem> CheckSettings(const DownloadSettings& wanted, const DownloadSettings& present) {
    std::vector<SettingsProblem> problems;
    const auto take = [&](TextSetting field, KelText message, bool isDecided) {
        if (!message.empty())
            problems.push_back({field, std::move(message), !isDecided && wanted.*field == present.*field});
    };
    take(&DownloadSettings::uploadPath, FolderProblem(wanted.uploadPath), false);
    take(&DownloadSettings::downloadPath, FolderProblem(wanted.downloadPath), false);
    take(&DownloadSettings::fileExtension, ExtensionProblem(wanted.fileExtension), false);
    // A user who turns the log on chooses its file too, so a bad one may not stay.
    if (wanted.writeLog != 0)
        take(&DownloadSettings::logFile, LogFileProblem(wanted.logFile), present.writeLog == 0);
    for (const NumberRange& range : numberRanges) {
        const std::int32_t number = wanted.*range.setting;
        if (KelText message = NumberProblem(range.setting, number); !message.empty())
            problems.push_back({range.setting, std::move(message), number == present.*range.setting});
    }
    return problems;
}

int HighestNumber(NumberSetting setting) {
    const auto* const range = std::find_if(numberRanges.begin(), numberRanges.end(),
                                           [&](const NumberRange& each) { return each.setting == setting; });
    assert(range != numberRanges.end());
    return range->highest;
}

KelText NumberProblem(NumberSetting setting, std::int64_t number) {
    const int highest = HighestNumber(setting);
    if (number >= 0 && number <= highest)
        return {};
    return Filled(text::setting::badRange, {u"0", ToText(highest)});
}

bool HasEffect(NumberSetting setting, const DownloadSettings& settings) {
    // A machine that is served by hand asks for nothing, and its files have no messages.
    const bool isForConversation =
        setting == &DownloadSettings::transmitDelaySeconds || setting == &DownloadSettings::incomingCheck;
    // The conversation waits for an acknowledgement of each line, and has messages of its own for the end of a file.
    const bool isByHandOnly = setting == &DownloadSettings::characterDelayMilliseconds ||
                              setting == &DownloadSettings::lineDelayMilliseconds ||
                              setting == &DownloadSettings::sendEndCode || setting == &DownloadSettings::silenceSeconds;
    return IsByHand(settings) ? !isForConversation : !isByHandOnly;
}

KelText StopBitsNote(KelTextView stopBits) {
    return stopBits == u"1.5" ? KelText(text::setting::oneAndAHalfStopBits) : KelText();
}

KelText AsFolderSetting(KelText folder) {
    constexpr auto separator = static_cast<char16_t>(fs::path::preferred_separator);
    if (!folder.empty() && folder.back() != u'/' && folder.back() != separator)
        folder.push_back(separator);
    return folder;
}

KelText AsExtensionSetting(KelText extension) {
    extension.erase(0, std::min(extension.find_first_not_of(u'.'), extension.size()));
    return extension;
}

}
