#include "settings/SettingsCheck.h"

#include "harness/TemporaryFolder.h"
#include "settings/SettingsChoices.h"

#include <set>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

TEST_CASE("CheckSettings: a wrong setting is named, and may stay only if it has not changed") {
    const TemporaryFolder folder;
    folder.WriteFile("file", "");
    DownloadSettings sound;
    sound.uploadPath = sound.downloadPath = AsFolderSetting(FromPath(folder.Path()));
    struct Case {
        KelText DownloadSettings::*field;
        KelText value;
        bool isWrong;
        std::int32_t writeLog = 0;
    };
    const KelText file = FromPath(folder / "file");
    const KelText missing = FromPath(folder / "missing");
    const Case cases[] = {
        {&DownloadSettings::uploadPath, u"", true},
        {&DownloadSettings::uploadPath, u" ", true},
        {&DownloadSettings::uploadPath, missing, true},
        {&DownloadSettings::uploadPath, FromPath(folder.Path()), false},
        {&DownloadSettings::downloadPath, file, true},
        {&DownloadSettings::downloadPath, u"a" + KelText(100000, u'b'), true},
        {&DownloadSettings::fileExtension, u"", false},
        {&DownloadSettings::fileExtension, u"con", false},
        {&DownloadSettings::fileExtension, u"tar.gz", false},
        {&DownloadSettings::fileExtension, u"a/b", true},
        {&DownloadSettings::fileExtension, u"*", true},
        {&DownloadSettings::fileExtension, u"nc ", true},
        {&DownloadSettings::fileExtension, u"n\nc", true},
        {&DownloadSettings::logFile, missing + u"/log.txt", false},
        {&DownloadSettings::logFile, missing + u"/log.txt", true, 1},
        {&DownloadSettings::logFile, u"", true, 1},
        {&DownloadSettings::logFile, FromPath(folder.Path()), true, 1},
        {&DownloadSettings::logFile, sound.uploadPath, true, 1},
        {&DownloadSettings::logFile, file, false, 1},
        {&DownloadSettings::logFile, missing, false, 1},
    };
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.value.substr(0, 80)));
        DownloadSettings wanted = sound;
        wanted.*each.field = each.value;
        wanted.writeLog = each.writeLog;
        const auto fresh = CheckSettings(wanted, sound);
        CHECK(fresh.size() == (each.isWrong ? 1 : 0));
        const auto kept = CheckSettings(wanted, wanted);
        CHECK(kept.size() == fresh.size());
        if (each.isWrong && fresh.size() == 1 && kept.size() == 1) {
            CHECK(fresh.front().field == AnySetting(each.field));
            CHECK_FALSE(fresh.front().mayStay);
            CHECK(kept.front().mayStay);
        }
    }
    DownloadSettings wrongNumber = sound;
    for (const std::int32_t number : {-1, 1000}) {
        wrongNumber.lineDelayMilliseconds = number;
        const auto fresh = CheckSettings(wrongNumber, sound);
        REQUIRE(fresh.size() == 1);
        CHECK(fresh.front().field == AnySetting(&DownloadSettings::lineDelayMilliseconds));
        CHECK_FALSE(fresh.front().mayStay);
        CHECK(CheckSettings(wrongNumber, wrongNumber).front().mayStay);
    }
    DownloadSettings logOff = sound;
    DownloadSettings logOn = sound;
    logOn.writeLog = 1;
    REQUIRE(CheckSettings(logOn, logOff).size() == 1);
    CHECK_FALSE(CheckSettings(logOn, logOff).front().mayStay);
}

TEST_CASE("AsFolderSetting, AsExtensionSetting: folders end with one separator, extensions begin without a dot") {
    const KelText separator{static_cast<char16_t>(std::filesystem::path::preferred_separator)};
    CHECK(AsFolderSetting(u"a") == u"a" + separator);
    CHECK(AsFolderSetting(u"a" + separator) == u"a" + separator);
    CHECK(AsFolderSetting(separator) == separator);
    CHECK(AsFolderSetting(u"") == u"");
    CHECK(AsExtensionSetting(u"..NC.x") == u"NC.x");
    CHECK(AsExtensionSetting(u".") == u"");
}

TEST_CASE("ControlCharacterEntry: each value is shown by an entry that has it") {
    std::set<int> offered;
    for (const ControlCharacter& entry : controlCharacters) {
        offered.insert(entry.value);
        CHECK(entry.name.size() == 3);
    }
    for (int value = 0; value < 256; ++value) {
        CAPTURE(value);
        const auto entry = ControlCharacterEntry(static_cast<std::uint8_t>(value));
        REQUIRE(entry.has_value() == offered.contains(value));
        CHECK((!entry || controlCharacters[*entry].value == value));
    }
    CHECK((offered.size() == 31 && !offered.contains(15)));
    CHECK(controlCharacters[*ControlCharacterEntry(31)].name == u"US ");
}
