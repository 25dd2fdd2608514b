#include "settings/SettingsStore.h"

#include "harness/TemporaryFolder.h"

#include <iterator>
#include <string>
#include <tuple>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::string_literals;
using tarvin::test::TemporaryFolder;

namespace {

// Different from every default, so that the origin of a value shows.
DownloadSettings ConstructorValues() {
    DownloadSettings settings;
    settings.fileExtension = u"ext";
    settings.logFile = u"log";
    settings.transmitDelaySeconds = 9;
    settings.lineDelayMilliseconds = 8;
    return settings;
}

// The constructor's values with the settings of a profile: its texts in the order of their keys, and its numbers.
DownloadSettings FromProfile(const KelText (&texts)[10], std::int32_t transmitDelaySeconds, std::int32_t writeLog) {
    DownloadSettings settings = ConstructorValues();
    std::tie(settings.port, settings.baudRate, settings.parity, settings.dataBits, settings.stopBits) =
        std::tie(texts[0], texts[1], texts[2], texts[3], texts[4]);
    std::tie(settings.flowControl, settings.uploadPath, settings.downloadPath, settings.fileExtension,
             settings.logFile) = std::tie(texts[5], texts[6], texts[7], texts[8], texts[9]);
    settings.transmitDelaySeconds = transmitDelaySeconds;
    settings.writeLog = writeLog;
    return settings;
}

DownloadSettings FirstRun() {
    return FromProfile({u"COM1", u"2400", u"None", u"8", u"1", u"Xon/Xoff", u"/nc", u"/nc", u"ext", u"log"}, 2, 0);
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

// A file that may be there, and what must happen to it.
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
    {"profile, port in lower case", "[Port Settings]\nport=com7\n", "COM7", false, false, false},
    {"profile with an odd port", "[Port Settings]\nport=/dev/ttyS0\n", "/dev/ttyS0", false, false, false},
    {"profile without port section", "[Log]\nwrite log=0\n", "COM1", false, false, false},
    {"foreign profile", "[Display]\nport=COM3\n", "COM1", false, false, true},
    {"garbage", "\xFF\xFE\0\x41"s, "COM1", false, false, true},
    {"nothing in it", "", "COM1", false, false, false},
    {"too long", "[Port Settings]\nport=COM3\n" + std::string(1024 * 1024, ' '), "COM1", false, false, true},
};

}

TEST_CASE("SettingsStore: every file is read as far as possible, and kept if saving would lose content") {
    for (const Found& each : foundFiles) {
        CAPTURE(each.what);
        const TemporaryFolder folder;
        folder.WriteFile("LASER2.INI", each.content);
        SettingsStore store(folder.Path(), u"LASER2", u"/nc");
        const auto loaded = store.Load(ConstructorValues());
        CHECK(ToUtf8(loaded.settings.port) == each.port);
        CHECK(loaded.warning.has_value() == each.warned);
        if (!each.fromRecord) {
            DownloadSettings expected = FirstRun();
            expected.port = FromUtf8(each.port);
            CHECK(loaded.settings == expected);
        }
        const bool isRecord = each.content.starts_with("\x41\x45\xF7\x05");
        DownloadSettings readOnce = ConstructorValues();
        CHECK(store.LoadSettings(readOnce) == isRecord);
        CHECK((isRecord || readOnce == ConstructorValues()));
        CHECK(folder.ReadFile("LASER2.INI") == each.content);
        REQUIRE(store.SaveSettings(FirstRun()));
        CHECK(folder.ReadFile("LASER2.INI") == EncodeRecord(FirstRun()));
        if (each.keptBeside)
            CHECK(folder.ReadFile("LASER2.INI.bad") == each.content);
        // The second save replaces settings, so it keeps nothing.
        REQUIRE(store.SaveSettings(FirstRun()));
        CHECK(FileCount(folder) == (each.keptBeside ? 2 : 1));
    }
}

TEST_CASE("SettingsStore: a record gives all settings, a profile those that have keys") {
    const TemporaryFolder folder;
    SettingsStore store(folder.Path(), u"A/B", u"/nc");
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
    CHECK(store.Load(ConstructorValues()).settings ==
          FromProfile({u"COM3", u"9600", u"Even", u"7", u"2", u"None", u"C:\\up ", KelText(79, u'd'), u"", u"act.log"},
                      5, 1));
}

TEST_CASE("SettingsStore: a machine named like KEL.INI or a device leaves both alone") {
    const TemporaryFolder folder;
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\n");
    for (const KelTextView name : {u"KEL", u"kel", u"COM1", u"nul"}) {
        SettingsStore store(folder.Path(), KelText(name), u"");
        REQUIRE(store.SaveSettings(FirstRun()));
        CHECK(folder.ReadFile("_" + ToUtf8(name) + ".INI") == EncodeRecord(FirstRun()));
    }
    CHECK(folder.ReadFile("KEL.INI") == "[PROGRAM PATHS]\n");
}

TEST_CASE("SettingsStore: each different lost file gets its own name, and one that cannot be kept is not replaced") {
    const TemporaryFolder folder;
    SettingsStore store(folder.Path(), u"TARVIN", u"");
    for (const char* content : {"first", "second", "first", "third"}) {
        folder.WriteFile("fresh", content);
        std::filesystem::rename(folder / "fresh", folder / "TARVIN.INI");
        REQUIRE(store.SaveSettings(FirstRun()));
    }
    CHECK(folder.ReadFile("TARVIN.INI.bad") == "first");
    CHECK(folder.ReadFile("TARVIN.INI.bad2") == "second");
    CHECK(folder.ReadFile("TARVIN.INI.bad3") == "third");
    CHECK(FileCount(folder) == 4);

    CHECK_FALSE(SettingsStore(folder / "missing", u"TARVIN", u"").SaveSettings(FirstRun()));
}

TEST_CASE("SettingsStore: a port in lower case keeps all settings of a profile in the second run too") {
    const TemporaryFolder folder;
    folder.WriteFile("TARVIN.INI", "[Port Settings]\nport=com7\nbaudrate=9600\n");
    SettingsStore store(folder.Path(), u"TARVIN", u"");
    REQUIRE(store.SaveSettings(store.Load(ConstructorValues()).settings));
    const auto second = store.Load(ConstructorValues());
    CHECK_FALSE(second.warning);
    CHECK(second.settings.baudRate == u"9600");
}

TEST_CASE("SettingsStore: a file that the system refuses is told and never replaced") {
    const TemporaryFolder folder;
    SettingsStore store(folder.Path(), u"TARVIN", u"/nc");
    std::filesystem::create_directories(folder / "TARVIN.INI/precious");
    const auto loaded = store.Load(ConstructorValues());
    CHECK(loaded.isRefused);
    CHECK(loaded.settings == FirstRun());
    REQUIRE(loaded.warning);
    CHECK(loaded.warning->text.find(FromPath(store.FilePath())) != KelText::npos);
    CHECK_FALSE(store.SaveSettings(FirstRun()));
    CHECK(std::filesystem::exists(folder / "TARVIN.INI/precious"));
    // The settings in use are not those of the file, even if it has become readable meanwhile.
    std::filesystem::remove_all(folder / "TARVIN.INI");
    folder.WriteFile("TARVIN.INI", RecordWithPort(u"COM2"));
    CHECK_FALSE(store.SaveSettings(FirstRun()));
    CHECK(folder.ReadFile("TARVIN.INI") == RecordWithPort(u"COM2"));
    CHECK(FileCount(folder) == 1);
    CHECK_FALSE(store.Load(ConstructorValues()).isRefused);
    CHECK(store.SaveSettings(FirstRun()));
    // A file that is refused now, and one that has gone.
    std::filesystem::remove(folder / "TARVIN.INI");
    std::filesystem::create_directory(folder / "TARVIN.INI");
    CHECK_FALSE(store.SaveSettings(FirstRun()));
    store.Load(ConstructorValues());
    std::filesystem::remove(folder / "TARVIN.INI");
    CHECK(store.SaveSettings(FirstRun()));
}

TEST_CASE("SettingsStore: a save keeps what another program has changed in the file meanwhile") {
    const std::string laterProfile = "[Port Settings]\nport=COM7\nbaudrate=9600\n";
    DownloadSettings laterRecord = FirstRun();
    laterRecord.port = u"COM7";
    laterRecord.baudRate = u"9600";
    for (const std::string& before : {std::string("[Port Settings]\nport=COM2\n"), RecordWithPort(u"COM2"), ""s}) {
        for (const std::string& later : {laterProfile, EncodeRecord(laterRecord)}) {
            const TemporaryFolder folder;
            if (!before.empty())
                folder.WriteFile("TARVIN.INI", before);
            SettingsStore running(folder.Path(), u"TARVIN", u"/nc");
            DownloadSettings inUse = running.Load(ConstructorValues()).settings;
            inUse.sendsChecksums = 1;
            inUse.port = u"COM9";      // changed by both
            inUse.silenceSeconds = 11; // changed here alone
            folder.WriteFile("TARVIN.INI", later);
            REQUIRE(running.SaveSettings(inUse));
            const DownloadSettings saved = SettingsStore(folder.Path(), u"TARVIN", u"/nc").Load({}).settings;
            CHECK(saved.port == u"COM7");
            CHECK(saved.baudRate == u"9600");
            CHECK(saved.silenceSeconds == 11);
            CHECK(saved.sendsChecksums == 1);
            CHECK(FileCount(folder) == 1);
            // The next save of this run finds its own file.
            inUse = saved;
            inUse.port = u"COM3";
            REQUIRE(running.SaveSettings(inUse));
            CHECK(SettingsStore(folder.Path(), u"TARVIN", u"/nc").Load({}).settings.port == u"COM3");
        }
    }
}

TEST_CASE("SettingsStore: settings that were deleted meanwhile are written again, and rubbish is kept beside") {
    const TemporaryFolder folder;
    folder.WriteFile("TARVIN.INI", RecordWithPort(u"COM2"));
    SettingsStore running(folder.Path(), u"TARVIN", u"/nc");
    const DownloadSettings inUse = running.Load(ConstructorValues()).settings;
    std::filesystem::remove(folder / "TARVIN.INI");
    REQUIRE(running.SaveSettings(inUse));
    CHECK(folder.ReadFile("TARVIN.INI") == RecordWithPort(u"COM2"));
    folder.WriteFile("TARVIN.INI", "rubbish");
    REQUIRE(running.SaveSettings(inUse));
    CHECK(folder.ReadFile("TARVIN.INI") == RecordWithPort(u"COM2"));
    CHECK(folder.ReadFile("TARVIN.INI.bad") == "rubbish");
}

TEST_CASE("SettingsStore: a change keeps the form of the file and all that it does not concern") {
    const TemporaryFolder folder;
    SettingsStore store(folder.Path(), u"TARVIN", u"/nc");
    const auto change = [&](auto field, auto value) {
        const auto done = store.ChangeSettings({}, [&](DownloadSettings& settings) {
            settings.*field = value;
            return Result<>();
        });
        REQUIRE(done);
        return *done;
    };
    CHECK(change(&DownloadSettings::baudRate, u"9600"));
    CHECK(folder.ReadFile("TARVIN.INI") == "[Port Settings]\r\nport=COM1\r\nbaudrate=9600\r\n");
    CHECK_FALSE(change(&DownloadSettings::baudRate, u"9600"));
    const std::string profile = "; the laser\n[Files]\nfile extension=x\nshop=north\n";
    folder.WriteFile("TARVIN.INI", profile);
    CHECK(change(&DownloadSettings::fileExtension, u"nc"));
    CHECK(folder.ReadFile("TARVIN.INI") == "; the laser\n[Files]\nfile extension=nc\nshop=north\n");
    // A profile cannot hold a text of more than 79 characters. It stays a profile; a new machine gets a record.
    const KelText longPath(100, u'p');
    const auto setLongPath = [&](DownloadSettings& settings) {
        settings.uploadPath = longPath;
        return Result<>();
    };
    const auto refused = store.ChangeSettings(FirstRun(), setLongPath);
    REQUIRE_FALSE(refused);
    CHECK(refused.Reason().text.find(u"upload path cannot be kept") != KelText::npos);
    CHECK_FALSE(store.TryChange(FirstRun(), setLongPath));
    CHECK(folder.ReadFile("TARVIN.INI") == "; the laser\n[Files]\nfile extension=nc\nshop=north\n");
    std::filesystem::remove(folder / "TARVIN.INI");
    CHECK(store.TryChange(FirstRun(), setLongPath));
    CHECK_FALSE(std::filesystem::exists(folder / "TARVIN.INI"));
    CHECK(change(&DownloadSettings::uploadPath, longPath));
    CHECK(store.Load({}).settings.uploadPath == longPath);

    DownloadSettings learned = FirstRun();
    learned.sendsChecksums = 1;
    learned.extensionFields = "newer";
    folder.WriteFile("TARVIN.INI", EncodeRecord(learned));
    CHECK(change(&DownloadSettings::parity, u"Even"));
    learned.parity = u"Even";
    CHECK(folder.ReadFile("TARVIN.INI") == EncodeRecord(learned));
    CHECK_FALSE(store.ChangeSettings({}, [](DownloadSettings& settings) {
        settings.parity = u"Odd";
        return Result<>(Error{u"no"});
    }));
    CHECK(folder.ReadFile("TARVIN.INI") == EncodeRecord(learned));
}
