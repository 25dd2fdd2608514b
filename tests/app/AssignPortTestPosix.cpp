// A machine gets the device that was asked for or none, and KEL.INI and settings lose nothing.

#include "app/Program.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryFolder.h"
#include "settings/SettingsRecord.h"
#include "setup/AssignPort.h"

#include <optional>

#include <doctest/doctest.h>
#include <stdlib.h>

using namespace tarvin;
using namespace tarvin::test;
namespace fs = std::filesystem;

namespace {

// An installation folder and a device with a name of its own.
class Workstation {
public:
    Workstation() {
        fs::create_symlink(terminal.Device(), device);
        REQUIRE(::setenv("TARVINDL_HOME", folder.Path().c_str(), 1) == 0);
    }

    // The text with the path of the device in place of each '@'.
    std::string Named(std::string text) const {
        for (std::size_t at = text.find('@'); at != std::string::npos; at = text.find('@', at))
            text.replace(at, 1, device.string());
        return text;
    }

    Result<KelText> Assign(KelTextView commandLine = u"M") const {
        return AssignPort(device, MachineNameOf(commandLine));
    }

    TemporaryFolder folder;
    PseudoTerminal terminal;
    fs::path device = folder / "tty.USB0";
};

std::string Record(const KelText& port) {
    DownloadSettings settings;
    settings.port = port;
    return EncodeRecord(settings);
}

// A record whose first text claims 4,294,967,295 characters.
std::string RecordOfEndlessPort() {
    std::string record = Record(u"COM4");
    record.replace(12, 4, "\xFF\xFF\xFF\xFF");
    return record;
}

}

TEST_CASE("AssignPort: a machine gets the port of its settings, the port of the device or the first free one") {
    struct Case {
        const char* name;
        std::string paths;
        std::optional<std::string> settings;
        std::optional<std::string> port; // none: refused
        std::string added;               // at the end of KEL.INI
    };
    const std::string head = "[PROGRAM PATHS]\nNC Files=NC\n";
    const std::string text = "[Port Settings]\nPort = COM7\n";
    const Case cases[] = {
        {"first free", head + "[PORTS]\nCOM1=@0\n", {}, "COM2", "COM2=@\n"},
        {"its own", head + "[PORTS]\nCOM1=/dev/a\nCOM3=@\n", {}, "COM3", ""},
        {"its own, hidden by another entry", head + "[PORTS]\nCOM3=/dev/a\nCOM3=@\n", {}, "COM1", "COM1=@\n"},
        {"its own, under a name that no settings can have", head + "[PORTS]\nLASER=@\n", {}, "COM1", "COM1=@\n"},
        {"no last line end", "[PROGRAM PATHS]\nNC Files=NC", {}, "COM1", "\n[PORTS]\nCOM1=@\n"},
        {"other case", "[Program Paths]\r\n[Ports]\r\ncom1 = \"/dev/a\"\r\n", {}, "COM2", "COM2=@\r\n"},
        {"nine are not all",
         head + "[PORTS]\nCOM1=\nCOM2=a\nCOM3=a\nCOM4=a\nCOM5=a\nCOM6=a\nCOM7=a\nCOM8=a\nCOM9=a\n",
         {},
         "COM10",
         "COM10=@\n"},
        {"wanted by text", head + "[PORTS]\n", text, "COM7", "COM7=@\n"},
        {"wanted by text, and its own", head + "[PORTS]\ncom7=@\n", text, "COM7", ""},
        {"wanted beside another of its own", head + "[PORTS]\nCOM1=@\n", text, "COM7", "COM7=@\n"},
        {"wanted by record", head + "[PORTS]\n", Record(u"COM4"), "COM4", "COM4=@\n"},
        {"wanted without being said", head + "[PORTS]\n", "[Files]\n", "COM1", "COM1=@\n"},
        {"another's", head + "[PORTS]\nCOM4=/dev/a\n", Record(u"COM4"), {}, ""},
        {"another's without being said", head + "[PORTS]\nCOM1=/dev/a\n", "[Files]\n", {}, ""},
        {"kept from being given", head + "[PORTS]\nCOM7=\n", text, {}, ""},
        {"no name of a port", head + "[PORTS]\n", "[Port Settings]\nport=COM7\x01\n", {}, ""},
        {"a name of many lines", head + "[PORTS]\n", Record(u"COM1\nCOM2=/dev/a"), {}, ""},
        {"a long name", head + "[PORTS]\n", Record(KelText(u"COM") + KelText(5000, u'1')), {}, ""},
        {"a damaged record", head + "[PORTS]\nCOM1=/dev/a\n", RecordOfEndlessPort(), {}, ""},
        {"no installation that a program would take", "[PORTS]\n", {}, {}, ""},
    };
    for (const Case& each : cases) {
        CAPTURE(each.name);
        const Workstation station;
        const std::string paths = station.Named(each.paths);
        station.folder.WriteFile("KEL.INI", paths);
        if (each.settings)
            station.folder.WriteFile("M.INI", *each.settings);
        const auto done = station.Assign();
        CHECK(static_cast<bool>(done) == each.port.has_value());
        CHECK(station.folder.ReadFile("KEL.INI") == paths + station.Named(each.added));
        if (each.settings)
            CHECK(station.folder.ReadFile("M.INI") == *each.settings);
        else if (each.port)
            CHECK(station.folder.ReadFile("M.INI") == "[Port Settings]\r\nport=" + *each.port + "\r\n");
        else
            CHECK_FALSE(fs::exists(station.folder / "M.INI"));
        if (done) {
            CHECK(ToUtf8(*done) == station.device.string() + " is " + *each.port + "; the settings of M are in " +
                                       (station.folder / "M.INI").string() + ".");
        }
    }
}

TEST_CASE("AssignPort: an entry for the device under another of its paths is its own") {
    const Workstation station;
    const std::string paths = "[PROGRAM PATHS]\n[PORTS]\nCOM5=" + station.terminal.Device().string() + "\n";
    station.folder.WriteFile("KEL.INI", paths);
    CHECK(station.Assign());
    CHECK(station.folder.ReadFile("M.INI") == "[Port Settings]\r\nport=COM5\r\n");
    CHECK(station.Assign());
    CHECK(station.folder.ReadFile("KEL.INI") == paths);
}

TEST_CASE("AssignPort: an installation is made where there is none, and the machine's name becomes a file name") {
    const Workstation station;
    const fs::path home = station.folder / "new" / "home";
    REQUIRE(::setenv("TARVINDL_HOME", home.c_str(), 1) == 0);
    const auto refused = AssignPort(station.folder / "nowhere", u"M");
    REQUIRE_FALSE(refused);
    CHECK(refused.Reason().text.starts_with(u"there is no device "));
    CHECK_FALSE(AssignPort(station.folder.Path(), u"M"));
    CHECK_FALSE(AssignPort({}, u"M"));
    CHECK_FALSE(fs::exists(home));

    const auto done = station.Assign(u"CUT/3 /l=de");
    REQUIRE(done);
    CHECK(done->starts_with(u"Made an installation in " + FromPath(home) + u"\n"));
    CHECK(fs::is_directory(home / "NC Files"));
    CHECK(station.folder.ReadFile("new/home/KEL.INI") ==
          station.Named("[PROGRAM PATHS]\r\nNC Files=NC Files\r\n[PORTS]\r\nCOM1=@\r\n"));
    CHECK(station.folder.ReadFile("new/home/CUT_3.INI") == "[Port Settings]\r\nport=COM1\r\n");
    const auto again = station.Assign(u"");
    REQUIRE(again);
    CHECK(again->find(u"the settings of TARVIN are in ") != KelText::npos);
    CHECK(fs::exists(home / "TARVIN.INI"));
}

TEST_CASE("AssignPort: a KEL.INI that cannot be read is not replaced") {
    const Workstation station;
    fs::create_directory(station.folder / "KEL.INI");
    CHECK_FALSE(station.Assign());
    CHECK(fs::is_directory(station.folder / "KEL.INI"));
    CHECK_FALSE(fs::exists(station.folder / "M.INI"));
}
