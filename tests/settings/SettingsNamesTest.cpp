#include "settings/SettingsNames.h"

#include "files/Profile.h"
#include "settings/SettingsFields.h"

#include <set>

#include <doctest/doctest.h>

using namespace tarvin;

namespace {

// Each field differs from its value in new settings.
DownloadSettings OtherSettings() {
    DownloadSettings settings;
    ForEachField([&](auto field) {
        using Value = std::decay_t<decltype(settings.*field)>;
        if constexpr (std::is_same_v<Value, KelText>)
            settings.*field = u" \"" + settings.*field + u"; = \u00e9\u4e2d\"";
        else
            settings.*field = static_cast<Value>(settings.*field == 1 ? 0 : settings.*field + 1);
    });
    settings.port = u"COM12";
    return settings;
}

}

TEST_CASE("SettingsNames: what is shown gives the same settings when it is read as a profile") {
    const DownloadSettings other = OtherSettings();
    DownloadSettings expected = other;
    // These have no name: a spare field, and what the program finds out by itself.
    expected.reservedInt = 0;
    expected.sendsChecksums = 0;
    const std::string shown = ToUtf8(ProfileOfSettings(other));
    CAPTURE(shown);
    CHECK(SettingsFromProfile(Profile(shown), {}) == expected);
    std::set<KelTextView> keys;
    for (const NamedSetting& each : NamedSettings())
        CHECK(keys.insert(each.key).second);
}

TEST_CASE("SettingsNames: a value is taken as it is chosen in the dialog, or refused with those that are allowed") {
    struct Case {
        KelTextView name;
        KelTextView value;
        const char* shown; // null: refused
        const char* reason = "";
    };
    const Case cases[] = {
        {u"PORT", u"com12", "COM12"},
        {u"port", u"COM0", nullptr, "port cannot be \"COM0\". Allowed: COM1 to COM256"},
        {u"port", u"COM07", nullptr, "COM1 to COM256"},
        {u"port", u"COM257", nullptr, "COM1 to COM256"},
        {u"port", u"/dev/ttyUSB0", nullptr, "COM1 to COM256"},
        {u"flow control", u"xon/xoff", "Xon/Xoff"},
        {u"flow control", u"rts", nullptr, "Allowed: Xon/Xoff, Hardware, None, Combined"},
        {u"baudrate", u"9601", nullptr, "9600, 19200"},
        {u"transmit delay", u"30", "30"},
        {u"transmit delay", u"31", nullptr, "a number from 0 to 30"},
        {u"transmit delay", u"-1", nullptr, "a number from 0 to 30"},
        {u"transmit delay", u"5s", nullptr, "a number from 0 to 30"},
        {u"transmit delay", u"99999999999999999999", nullptr, "a number from 0 to 30"},
        {u"write log", u"Yes", "1"},
        {u"write log", u"2", nullptr, "0 (off), 1 (on)"},
        {u"controller", u"By Hand", "by hand"},
        {u"controller", u"1", nullptr, "by number, by hand"},
        {u"incoming check", u"repeat", "repeat"},
        {u"end character", u"etx", "ETX"},
        {u"end character", u"200", "200"},
        {u"end character", u"256", nullptr, "a name such as DC2 or EOT"},
        {u"file extension", u"..nc", "nc"},
        {u"station name", u"a\nb", nullptr, "without control characters"},
        {u"station name", u"a\u007fb", nullptr, "without control characters"},
        {u"upload path", u"/a\u0085b", nullptr, "without control characters"},
    };
    for (const Case& each : cases) {
        const NamedSetting* const setting = FindNamedSetting(each.name);
        REQUIRE(setting != nullptr);
        CAPTURE(ToUtf8(each.name));
        CAPTURE(ToUtf8(each.value));
        const DownloadSettings before = OtherSettings();
        DownloadSettings settings = before;
        const auto done = SetNamedSetting(*setting, each.value, settings);
        CHECK(static_cast<bool>(done) == (each.shown != nullptr));
        if (done) {
            CHECK(ToUtf8(SettingValue(*setting, settings)) == each.shown);
        } else {
            CHECK(settings == before);
            CHECK(ToUtf8(done.Reason().text).find(each.reason) != std::string::npos);
        }
    }
    CHECK(FindNamedSetting(u"baud rate") == nullptr);
}

TEST_CASE("SettingsNames: new values replace those that count, and every other byte of the profile stays") {
    const std::string profile = "; laser\r\n[files]\r\nUPLOAD PATH = /a\r\nupload path=/b\r\n; end\r\n\r\n"
                                "[Files]\r\nupload path=/c\r\n[Other]\r\nupload path=/d";
    DownloadSettings before = SettingsFromProfile(Profile(profile), {});
    CHECK(before.uploadPath == u"/a");
    DownloadSettings after = before;
    after.uploadPath = u" /new";
    after.fileExtension = u"nc";
    after.attentionMinutes = 7;
    const std::string changed = WithSettings(profile, before, after);
    CHECK(changed ==
          "; laser\r\n[files]\r\nUPLOAD PATH =\" /new\"\r\nupload path=/b\r\nfile extension=nc\r\n; end\r\n\r\n"
          "[Files]\r\nupload path=/c\r\n[Other]\r\nupload path=/d\r\n[Calls]\r\nattention=7\r\n");
    CHECK(SettingsFromProfile(Profile(changed), {}) == after);
}
