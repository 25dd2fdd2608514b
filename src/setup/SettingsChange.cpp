#include "setup/SettingsChange.h"

#include "base/SetupMessages.h"
#include "dictionary/TextHolder.h"
#include "files/Links.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsCheck.h"
#include "settings/SettingsNames.h"
#include "setup/InstallationFiles.h"
#include "setup/InstallationSetup.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

namespace {

void AddLine(KelText& lines, const KelText& line) {
    lines += (lines.empty() ? u"" : u"\n") + line;
}

KelText AllNames() {
    KelText names;
    for (const NamedSetting& each : NamedSettings())
        names += (names.empty() ? u"" : u", ") + KelText(each.key);
    return names;
}

// The languages of the installation's dictionary, or of the one that a new installation gets. Empty without a
// dictionary.
std::vector<KelText> LanguagesOf(const Installation& installation) {
    constexpr const char* dictionaryName = "diction.ary";
    std::error_code ignored;
    const auto own = installation.Folder() / dictionaryName;
    // The set-up has made a link to the shared one, which root does not follow in the service's folder.
    const bool isOwn = std::filesystem::exists(own, ignored) && CheckLink(own);
    TextHolder dictionary;
    std::vector<KelText> names;
    const auto folder = isOwn ? installation.Folder() : SharedFile(dictionaryName).parent_path();
    if (folder.empty() || !dictionary.Load({.programFolder = folder}))
        return names;
    names.push_back(u"English");
    for (const DictionaryLanguage& language : dictionary.Languages())
        names.push_back(language.name);
    return names;
}

// Empty for a good one.
KelText LanguageProblem(const KelText& language, const Installation& installation) {
    if (language.empty())
        return {};
    const std::vector<KelText> names = LanguagesOf(installation);
    const bool isKnown =
        std::ranges::any_of(names, [&](const KelText& name) { return EqualIgnoringCase(name, language); });
    if (names.empty() || isKnown)
        return {};
    KelText allowed;
    for (const KelText& name : names)
        allowed += (allowed.empty() ? u"" : u", ") + name;
    return Filled(text::settingValue::refused, {u"language", language, allowed});
}

// Whether the problem is only that a folder is missing which is among these.
bool IsMissingOnly(const AnySetting& field, const DownloadSettings& settings,
                   const std::vector<std::filesystem::path>& foldersToMake) {
    // Without the separator at the end: with it a file counts as missing.
    const auto plain = [](const std::filesystem::path& folder) {
        return (folder / "x").lexically_normal().parent_path();
    };
    const auto* const text = std::get_if<TextSetting>(&field);
    const bool isFolder =
        text != nullptr && (*text == &DownloadSettings::uploadPath || *text == &DownloadSettings::downloadPath);
    if (!isFolder)
        return false;
    const auto folder = plain(ToPath(settings.*(*text)));
    std::error_code ignored;
    return !std::filesystem::exists(folder, ignored) &&
           std::ranges::any_of(foldersToMake, [&](const auto& each) { return plain(each) == folder; });
}

// The program that serves the machine runs in another folder than this command.
KelText Absolute(const NamedSetting& setting, const KelText& value) {
    if (setting.form != SettingForm::Folder || value.empty())
        return value;
    std::error_code error;
    const auto folder = std::filesystem::absolute(ToPath(value), error);
    return error ? value : FromPath(folder);
}

Result<> Apply(const std::vector<NamedValue>& values, const Installation& installation,
               const std::vector<std::filesystem::path>& foldersToMake, DownloadSettings& settings) {
    const DownloadSettings present = settings;
    KelText problems;
    for (const NamedValue& each : values) {
        const NamedSetting* const setting = FindNamedSetting(each.name);
        if (setting == nullptr)
            AddLine(problems, Filled(text::settingValue::unknown, {each.name, AllNames()}));
        else if (const auto set = SetNamedSetting(*setting, Absolute(*setting, each.value), settings); !set)
            AddLine(problems, set.Reason().text);
    }
    if (settings.language != present.language) {
        if (const KelText problem = LanguageProblem(settings.language, installation); !problem.empty())
            AddLine(problems, problem);
    }
    for (const SettingsProblem& each : CheckSettings(settings, present)) {
        // A value that stays as it was may be wrong today: a network drive that is away, for example.
        if (!each.mayStay && !IsMissingOnly(each.field, settings, foldersToMake))
            AddLine(problems, Filled(text::settingValue::problem, {SettingName(each.field), each.message}));
    }
    return problems.empty() ? Result<>() : Error{problems};
}

}

SettingsStore StoreOf(const Installation& installation, const KelText& machineName) {
    return SettingsStore(installation.Folder(), machineName, FromPath(installation.NcFilesFolder()));
}

bool IsMachine(const Installation& installation, const KelText& machineName) {
    std::error_code ignored;
    return std::filesystem::exists(
        std::filesystem::symlink_status(StoreOf(installation, machineName).FilePath(), ignored));
}

std::optional<KelText> DamageOfSettings(const SettingsStore::LoadResult& loaded, const std::filesystem::path& file) {
    if (loaded.isForeign)
        return Filled(text::notice::settingsForeign, {FromPath(file)});
    if (!loaded.warning || loaded.isRefused)
        return std::nullopt;
    return Filled(text::setup::isDamaged, {FromPath(file)});
}

std::optional<KelText> DamageOfSettings(const Installation& installation, const KelText& machineName) {
    SettingsStore store = StoreOf(installation, machineName);
    return DamageOfSettings(store.Load(TarvinApp::FirstSettings()), store.FilePath());
}

Result<ShownSettings> ShowSettings(const Installation& installation, const KelText& machineName) {
    SettingsStore store = StoreOf(installation, machineName);
    const auto loaded = store.Load(TarvinApp::FirstSettings());
    if (loaded.isRefused)
        return Error{loaded.warning->text};
    return ShownSettings{ProfileOfSettings(loaded.settings), DamageOfSettings(loaded, store.FilePath())};
}

Result<> TrySettings(const Installation& installation, const KelText& machineName,
                     const std::vector<NamedValue>& values, const std::vector<std::filesystem::path>& foldersToMake) {
    return StoreOf(installation, machineName).TryChange(TarvinApp::FirstSettings(), [&](DownloadSettings& settings) {
        return Apply(values, installation, foldersToMake, settings);
    });
}

Result<bool> ChangeSettings(const Installation& installation, const KelText& machineName,
                            const std::vector<NamedValue>& values) {
    SettingsStore store = StoreOf(installation, machineName);
    const bool isNew = !IsMachine(installation, machineName);
    auto changed = store.ChangeSettings(TarvinApp::FirstSettings(), [&](DownloadSettings& settings) {
        return Apply(values, installation, {}, settings);
    });
    if (changed && isNew)
        GiveToOwnerOf(installation.Folder(), store.FilePath());
    return changed;
}

Result<NamedValue> NamedValueOf(const KelText& word) {
    const std::size_t equals = word.find(u'=');
    if (equals == KelText::npos || equals == 0)
        return Error{Filled(text::settingValue::noValue, {word})};
    return NamedValue{KelText(Trimmed(KelTextView(word).substr(0, equals))), word.substr(equals + 1)};
}

}
