#include "settings/SettingsNames.h"

#include "base/SetupMessages.h"
#include "files/Profile.h"
#include "settings/SettingsChoices.h"

#include <algorithm>
#include <array>

namespace tarvin {

namespace {

constexpr KelTextView portSection = u"Port Settings";
constexpr KelTextView transmissionSection = u"Transmission";
constexpr KelTextView controllerSection = u"Controller";
constexpr KelTextView filesSection = u"Files";
constexpr KelTextView logSection = u"Log";
constexpr KelTextView callsSection = u"Calls";
constexpr KelTextView textsSection = u"Texts";
constexpr KelTextView networkSection = u"Network";

// The word of a value of DownloadSettings::controllerKind and incomingCheck has the value as its index.
constexpr std::array<KelTextView, 2> controllerWords = {u"by number", u"by hand"};
constexpr std::array<KelTextView, 3> incomingCheckWords = {u"off", u"end", u"repeat"};

constexpr std::int32_t longestNumberDigits = 9;

using Settings = DownloadSettings;

constexpr NamedSetting namedSettings[] = {
    {portSection, u"port", &Settings::port, SettingForm::Port},
    {portSection, u"baudrate", &Settings::baudRate, SettingForm::Choice, baudRateChoices},
    {portSection, u"parity", &Settings::parity, SettingForm::Choice, parityChoices},
    {portSection, u"databits", &Settings::dataBits, SettingForm::Choice, dataBitsChoices},
    {portSection, u"stopbits", &Settings::stopBits, SettingForm::Choice, stopBitsChoices},
    {portSection, u"flow control", &Settings::flowControl, SettingForm::Choice, flowControlChoices},
    {portSection, u"cts handshake", &Settings::ctsFlow, SettingForm::Flag},
    {portSection, u"dsr handshake", &Settings::dsrFlow, SettingForm::Flag},
    {portSection, u"transmit delay", &Settings::transmitDelaySeconds, SettingForm::Number},
    {controllerSection, u"controller", &Settings::controllerKind, SettingForm::Word, controllerWords},
    {controllerSection, u"incoming check", &Settings::incomingCheck, SettingForm::Word, incomingCheckWords},
    {transmissionSection, u"character delay", &Settings::characterDelayMilliseconds, SettingForm::Number},
    {transmissionSection, u"line delay", &Settings::lineDelayMilliseconds, SettingForm::Number},
    {transmissionSection, u"send start code", &Settings::sendStartCode, SettingForm::Flag},
    {transmissionSection, u"start character", &Settings::startCharacter, SettingForm::Character},
    {transmissionSection, u"send end code", &Settings::sendEndCode, SettingForm::Flag},
    {transmissionSection, u"end character", &Settings::endCharacter, SettingForm::Character},
    {transmissionSection, u"silence", &Settings::silenceSeconds, SettingForm::Number},
    {filesSection, u"upload path", &Settings::uploadPath, SettingForm::Folder},
    {filesSection, u"download path", &Settings::downloadPath, SettingForm::Folder},
    {filesSection, u"file extension", &Settings::fileExtension, SettingForm::Extension},
    {filesSection, u"replaced copies", &Settings::replacedFilesKept, SettingForm::Number},
    {filesSection, u"new files per hour", &Settings::newFilesPerHour, SettingForm::Number},
    {logSection, u"log file", &Settings::logFile, SettingForm::Text},
    {logSection, u"write log", &Settings::writeLog, SettingForm::Flag},
    {logSection, u"comms log file", &Settings::commsLogFileName, SettingForm::Text},
    {logSection, u"history years", &Settings::historyYears, SettingForm::Number},
    {callsSection, u"attention", &Settings::attentionMinutes, SettingForm::Number},
    {callsSection, u"call sound", &Settings::callsWithSound, SettingForm::Flag},
    {textsSection, u"language", &Settings::language, SettingForm::Text},
    {networkSection, u"network mode", &Settings::networkMode, SettingForm::Flag},
    {networkSection, u"server mode", &Settings::serverMode, SettingForm::Flag},
    {networkSection, u"station name", &Settings::stationName, SettingForm::Text},
};

// None unless the whole text is a number without a sign.
std::optional<std::int32_t> WholeNumber(KelTextView text) {
    if (text.empty() || text.size() > longestNumberDigits || text.find_first_not_of(u"0123456789") != text.npos)
        return std::nullopt;
    return LeadingNumber(text);
}

std::optional<std::size_t> IndexOf(std::span<const KelTextView> words, KelTextView text) {
    const auto found = std::ranges::find_if(words, [&](KelTextView word) { return EqualIgnoringCase(word, text); });
    if (found == words.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - words.begin());
}

std::optional<std::int32_t> FlagValue(KelTextView text) {
    constexpr std::array<KelTextView, 4> off = {u"0", u"off", u"no", u"false"};
    constexpr std::array<KelTextView, 4> on = {u"1", u"on", u"yes", u"true"};
    if (IndexOf(off, text))
        return 0;
    return IndexOf(on, text) ? std::optional(1) : std::nullopt;
}

std::optional<std::uint8_t> CharacterValue(KelTextView text) {
    for (const ControlCharacter& each : controlCharacters) {
        if (EqualIgnoringCase(Trimmed(each.name), text))
            return each.value;
    }
    const auto number = WholeNumber(text);
    return number && *number <= 255 ? std::optional(static_cast<std::uint8_t>(*number)) : std::nullopt;
}

KelText WordsTogether(std::span<const KelTextView> words) {
    KelText all;
    for (const KelTextView word : words)
        all += (all.empty() ? u"" : u", ") + KelText(word);
    return all;
}

// COM1 to COM256, in upper case. None for every other text.
std::optional<KelText> PortValue(KelTextView text) {
    constexpr std::int32_t highestPort = 256;
    const auto number =
        EqualIgnoringCase(text.substr(0, 3), u"COM") ? WholeNumber(text.substr(3)) : std::optional<std::int32_t>();
    if (!number || *number < 1 || *number > highestPort || text[3] == u'0')
        return std::nullopt;
    return u"COM" + ToText(*number);
}

KelText AllowedValues(const NamedSetting& setting) {
    switch (setting.form) {
    case SettingForm::Port:
        return text::settingValue::port;
    case SettingForm::Choice:
    case SettingForm::Word:
        return WordsTogether(setting.words);
    case SettingForm::Number:
        return Filled(text::settingValue::number, {ToText(HighestNumber(std::get<NumberSetting>(setting.field)))});
    case SettingForm::Flag:
        return text::settingValue::flag;
    case SettingForm::Character:
        return text::settingValue::character;
    case SettingForm::Text:
    case SettingForm::Folder:
    case SettingForm::Extension:
        break;
    }
    return text::settingValue::text;
}

// False if the value has another form.
bool SetNumber(const NamedSetting& setting, NumberSetting field, KelTextView value, DownloadSettings& settings) {
    std::optional<std::int32_t> number;
    if (setting.form == SettingForm::Flag)
        number = FlagValue(value);
    else if (setting.form == SettingForm::Number)
        number = WholeNumber(value);
    else if (const auto index = IndexOf(setting.words, value))
        number = static_cast<std::int32_t>(*index);
    if (!number || (setting.form == SettingForm::Number && *number > HighestNumber(field)))
        return false;
    settings.*field = *number;
    return true;
}

// False if the value has another form.
bool SetText(const NamedSetting& setting, TextSetting field, KelTextView value, DownloadSettings& settings) {
    std::optional<KelText> text;
    if (setting.form == SettingForm::Port)
        text = PortValue(value);
    else if (setting.form == SettingForm::Folder)
        text = AsFolderSetting(KelText(value));
    else if (setting.form == SettingForm::Extension)
        text = AsExtensionSetting(KelText(value));
    else if (setting.form == SettingForm::Text)
        text = KelText(value);
    else if (const auto index = IndexOf(setting.words, value))
        text = KelText(setting.words[*index]);
    if (!text || std::ranges::any_of(value, IsControlCharacter))
        return false;
    settings.*field = *text;
    return true;
}

// A profile drops blanks at the ends of a value, and one pair of quotes.
KelText QuotedForProfile(KelText value) {
    std::ranges::replace_if(
        value, [](char16_t unit) { return unit < u' '; }, u' ');
    const bool isKept = Trimmed(value) == value && !value.starts_with(u'"') && !value.starts_with(u'\'');
    return isKept ? value : u'"' + value + u'"';
}

// The name of a COM port in upper case, as records hold it.
KelText PortFromProfile(KelText port) {
    if (EqualIgnoringCase(KelTextView(port).substr(0, 3), u"COM"))
        std::ranges::transform(port, port.begin(), ToUpperAscii);
    return port;
}

// Numbers are read as in every profile. Words and the names of characters count too.
std::int32_t NumberFromProfile(const NamedSetting& setting, const Profile& profile, std::int32_t other) {
    const KelText value = profile.Text(setting.section, setting.key, u"");
    if (const auto index = IndexOf(setting.words, value))
        return static_cast<std::int32_t>(*index);
    return profile.Integer(setting.section, setting.key, other);
}

}

std::span<const NamedSetting> NamedSettings() {
    return namedSettings;
}

const NamedSetting* FindNamedSetting(KelTextView name) {
    const auto* const found = std::ranges::find_if(
        namedSettings, [&](const NamedSetting& each) { return EqualIgnoringCase(each.key, name); });
    return found == std::end(namedSettings) ? nullptr : found;
}

KelText SettingName(const AnySetting& field) {
    const auto isNamed = [&](const NamedSetting& each) {
        return std::visit(
            [&](auto member) {
                const auto* const found = std::get_if<decltype(member)>(&each.field);
                return found != nullptr && *found == member;
            },
            field);
    };
    const auto* const found = std::ranges::find_if(namedSettings, isNamed);
    return found == std::end(namedSettings) ? KelText() : KelText(found->key);
}

KelText SettingValue(const NamedSetting& setting, const DownloadSettings& settings) {
    if (const auto* field = std::get_if<TextSetting>(&setting.field))
        return settings.*(*field);
    if (const auto* field = std::get_if<NumberSetting>(&setting.field)) {
        const std::int32_t number = settings.*(*field);
        const bool hasWord = number >= 0 && static_cast<std::size_t>(number) < setting.words.size();
        return hasWord ? KelText(setting.words[static_cast<std::size_t>(number)]) : ToText(number);
    }
    const std::uint8_t value = settings.*std::get<std::uint8_t DownloadSettings::*>(setting.field);
    const auto entry = ControlCharacterEntry(value);
    return entry ? KelText(Trimmed(controlCharacters[*entry].name)) : ToText(value);
}

Result<> SetNamedSetting(const NamedSetting& setting, KelTextView value, DownloadSettings& settings) {
    bool isSet = false;
    if (const auto* text = std::get_if<TextSetting>(&setting.field)) {
        isSet = SetText(setting, *text, value, settings);
    } else if (const auto* number = std::get_if<NumberSetting>(&setting.field)) {
        isSet = SetNumber(setting, *number, value, settings);
    } else if (const auto character = CharacterValue(value)) {
        settings.*std::get<std::uint8_t DownloadSettings::*>(setting.field) = *character;
        isSet = true;
    }
    if (isSet)
        return {};
    return Error{Filled(text::settingValue::refused, {setting.key, value, AllowedValues(setting)})};
}

DownloadSettings SettingsFromProfile(const Profile& profile, DownloadSettings others) {
    DownloadSettings settings = std::move(others);
    for (const NamedSetting& each : namedSettings) {
        if (const auto* text = std::get_if<TextSetting>(&each.field)) {
            settings.*(*text) = profile.Text(each.section, each.key, settings.*(*text));
        } else if (const auto* number = std::get_if<NumberSetting>(&each.field)) {
            settings.*(*number) = NumberFromProfile(each, profile, settings.*(*number));
        } else {
            auto& character = settings.*std::get<std::uint8_t DownloadSettings::*>(each.field);
            character = CharacterValue(profile.Text(each.section, each.key, u"")).value_or(character);
        }
    }
    settings.port = PortFromProfile(settings.port);
    return settings;
}

bool HasSettings(const Profile& profile) {
    return std::ranges::any_of(namedSettings,
                               [&](const NamedSetting& each) { return profile.HasSection(each.section); });
}

KelText ProfileOfSettings(const DownloadSettings& settings) {
    KelText profile;
    KelTextView section;
    for (const NamedSetting& each : namedSettings) {
        if (each.section != section)
            profile += (section.empty() ? u"[" : u"\n[") + KelText(each.section) + u"]\n";
        section = each.section;
        profile += KelText(each.key) + u'=' + QuotedForProfile(SettingValue(each, settings)) + u'\n';
    }
    return profile;
}

std::string WithSettings(std::string fileBytes, const DownloadSettings& before, const DownloadSettings& after) {
    for (const NamedSetting& each : namedSettings) {
        const KelText value = SettingValue(each, after);
        if (value != SettingValue(each, before))
            fileBytes = WithProfileValue(fileBytes, each.section, each.key, QuotedForProfile(value));
    }
    return fileBytes;
}

}
