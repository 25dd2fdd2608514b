#include "settings/SettingsStore.h"

#include "support/TemporaryFolder.h"

#include <iterator>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::string_literals;
using tarvin::test::TemporaryFolder;

namespace {

// Unlike any default, so that a value's origin shows.
DownloadSettings ConstructorValues() {
    DownloadSettings settings;
    settings.fileExtension = u"ext";
    settings.logFile = u"log";
    settings.transmitDelaySeconds = 9;
    settings.lineDelayMilliseconds = 8;
    return settings;
}

DownloadSettings FirstRun() {
    DownloadSettings settings = ConstructorValues();
    settings.port = u"COM1";
    settings.baudRate = u"2400";
    settings.parity = u"None";
    settings.dataBits = u"8";
    settings.stopBits = u"1";
    settings.flowControl = u"Xon/Xoff";
    settings.uploadPath = u"/nc";
    settings.downloadPath = u"/nc";
    settings.transmitDelaySeconds = 2;
    return settings;
}

std::string RecordWithPort(KelTextView port) {
    DownloadSettings settings;
    settings.port = port;
    settings.transmitDelaySeconds = 0;
    settings.lineDelayMilliseconds = 77;
    settings.extensionFields = "more";
    return EncodeRecord(settings);
}

std::size_t FileCount(const TemporaryFolder& folder) {
    return static_cast<std::size_t>(std::distance(std::filesystem::directory_iterator(folder.Path()), {}));
}

// A file as it may be found, and what becomes of it.
struct Found {
    std::string what;
    std::string content;
    const char* port; // of the settings loaded
    bool fromRecord;
    bool warned;
    bool keptBeside;
};

const Found foundFiles[] = {
    {"record", RecordWithPort(u"COM12"), "COM12", true, false, false},
    {"record, port in lower case", RecordWithPort(u"com2"), "COM1", false, true, true},
    {"record without a port", RecordWithPort(u""), "COM1", false, true, true},
    {"record with more behind it", RecordWithPort(u"COM2") + "x", "COM2", true, false, true},
    {"record cut behind the port", RecordWithPort(u"COM2").substr(0, 40), "COM2", true, true, true},
    {"record cut within the port", RecordWithPort(u"COM2").substr(0, 22), "COM1", false, true, true},
    {"record of another type", "\x42" + RecordWithPort(u"COM2").substr(1), "COM1", false, false, true},
    {"profile", "[port settings]\r\nPORT = COM3\r\n", "COM3", false, false, false},
    {"profile with an odd port", "[Port Settings]\nport=/dev/ttyS0\n", "/dev/ttyS0", false, false, false},
    {"profile without port section", "[Log]\nwrite log=0\n", "COM1", false, false, false},
    {"foreign profile", "[Display]\nport=COM3\n", "COM1", false, false, true},
    {"garbage", "\xFF\xFE\0\x41"s, "COM1", false, false, true},
    {"nothing in it", "", "COM1", false, false, false},
    {"too long", "[Port Settings]\nport=COM3\n" + std::string(1024 * 1024, ' '), "COM1", false, false, true},
};

}

TEST_CASE("each file that may be found is read as far as it can be, and kept beside if saving would lose it") {
    for (const Found& each : foundFiles) {
        CAPTURE(each.what);
        const TemporaryFolder folder;
        folder.WriteFile("LASER2.INI", each.content);
        const SettingsStore store(folder.Path(), u"LASER2", u"/nc");
        const auto loaded = store.Load(ConstructorValues());
        CHECK(ToUtf8(loaded.settings.port) == each.port);
        CHECK(loaded.warning.has_value() == each.warned);
        if (!each.fromRecord) {
            DownloadSettings expected = FirstRun();
            expected.port = FromUtf8(each.port);
            CHECK(loaded.settings == expected);
        }
        CHECK(folder.ReadFile("LASER2.INI") == each.content);
        REQUIRE(store.SaveSettings(FirstRun()));
        CHECK(folder.ReadFile("LASER2.INI") == EncodeRecord(FirstRun()));
        if (each.keptBeside)
            CHECK(folder.ReadFile("LASER2.INI.bad") == each.content);
        // A second save has nothing to keep.
        REQUIRE(store.SaveSettings(FirstRun()));
        CHECK(FileCount(folder) == (each.keptBeside ? 2 : 1));
    }
}

TEST_CASE("a record is taken as it stands, a profile only for the keys that it may have") {
    const TemporaryFolder folder;
    const SettingsStore store(folder.Path(), u"A/B", u"/nc");
    CHECK(store.Load(ConstructorValues()).settings == FirstRun());
    CHECK(FileCount(folder) == 0);
    folder.WriteFile("A_B.INI", RecordWithPort(u"COM2"));
    DownloadSettings settings = store.Load(ConstructorValues()).settings;
    CHECK(settings.transmitDelaySeconds == 0);
    CHECK(settings.lineDelayMilliseconds == 77);
    REQUIRE(store.SaveSettings(settings));
    CHECK(folder.ReadFile("A_B.INI") == RecordWithPort(u"COM2"));

    folder.WriteFile("A_B.INI", "[Port Settings]\nport=COM3\nbaudrate=9600\nparity=Even\ndatabits=7\nstopbits=2\n"
                                "flow control=None\ntransmit delay=5s\nline delay=6\n"
                                "[Files]\nupload path=\"C:\\up \"\ndownload path=" +
                                    std::string(100, 'd') +
                                    "\nfile extension=\n"
                                    "[Log]\nlog file=act.log\nwrite log=1\n");
    DownloadSettings expected = ConstructorValues();
    expected.port = u"COM3";
    expected.baudRate = u"9600";
    expected.parity = u"Even";
    expected.dataBits = u"7";
    expected.stopBits = u"2";
    expected.flowControl = u"None";
    expected.uploadPath = u"C:\\up ";
    expected.downloadPath = KelText(79, u'd');
    expected.fileExtension = u"";
    expected.transmitDelaySeconds = 5;
    expected.logFile = u"act.log";
    expected.writeLog = 1;
    CHECK(store.Load(ConstructorValues()).settings == expected);
}

TEST_CASE("one load reports whether there is a record, whatever its port is worth") {
    for (const Found& each : foundFiles) {
        CAPTURE(each.what);
        const TemporaryFolder folder;
        folder.WriteFile("TARVIN.INI", each.content);
        DownloadSettings settings = ConstructorValues();
        const bool isRecord = each.what.starts_with("record") && each.content.front() == '\x41';
        CHECK(SettingsStore(folder.Path(), u"TARVIN", u"").LoadSettings(settings) == isRecord);
        if (!isRecord)
            CHECK(settings == ConstructorValues());
    }
}

TEST_CASE("each different lost file gets a name of its own, and one that cannot be kept is not replaced") {
    const TemporaryFolder folder;
    const SettingsStore store(folder.Path(), u"TARVIN", u"");
    for (const char* content : {"first", "second", "first", "third"}) {
        folder.WriteFile("fresh", content);
        std::filesystem::rename(folder / "fresh", folder / "TARVIN.INI");
        REQUIRE(store.SaveSettings(FirstRun()));
    }
    CHECK(folder.ReadFile("TARVIN.INI.bad") == "first");
    CHECK(folder.ReadFile("TARVIN.INI.bad2") == "second");
    CHECK(folder.ReadFile("TARVIN.INI.bad3") == "third");
    CHECK(FileCount(folder) == 4);

    std::filesystem::remove(folder / "TARVIN.INI");
    std::filesystem::create_directories(folder / "TARVIN.INI/precious");
    CHECK(store.Load(ConstructorValues()).settings.port == u"COM1");
    CHECK_FALSE(store.SaveSettings(FirstRun()));
    CHECK(std::filesystem::exists(folder / "TARVIN.INI/precious"));
    CHECK_FALSE(SettingsStore(folder / "missing", u"TARVIN", u"").SaveSettings(FirstRun()));
}
