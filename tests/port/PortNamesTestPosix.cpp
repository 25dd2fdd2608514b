// Ports are found and named on a computer made of pseudo-terminals and folders.

#include "files/NativeFile.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryFolder.h"
#include "port/PortNamesPosix.h"

#include <deque>
#include <functional>
#include <set>
#include <string>
#include <thread>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::string_literals;
using namespace std::chrono_literals;
namespace fs = std::filesystem;

namespace {

class Computer {
public:
    Computer() {
        fs::create_directories(roots.terminalClass / "console");
        fs::create_directories(roots.devices);
        fs::create_directories(roots.byId);
        // A virtual terminal: a name without hardware.
        fs::create_directories(roots.terminalClass / "tty1");
        fs::create_symlink(terminals.emplace_back().Device(), roots.devices / "tty1");
    }

    fs::path Plug(const std::string& name, const std::string& id = {}) {
        fs::create_directories(roots.terminalClass / name / "device");
        fs::create_symlink(terminals.emplace_back().Device(), roots.devices / name);
        if (!id.empty())
            fs::create_symlink(roots.devices / name, roots.byId / id);
        return id.empty() ? roots.devices / name : roots.byId / id;
    }

    // "COM1=ttyS0, COM12=" and the like: names, and the last parts of their devices.
    std::string Find(const KelText& currentPort = u"") const {
        std::string list;
        for (const FoundPort& port : FindPorts(KelIni(), currentPort, roots))
            list += (list.empty() ? "" : ", ") + ToUtf8(port.name) + "=" + ToPath(port.device).filename().string();
        return list;
    }

    fs::path KelIni() const { return folder / "KEL.INI"; }
    std::string Entries() const { return folder.ReadFile("KEL.INI"); }

    TemporaryFolder folder;
    DeviceRoots roots = {folder / "sys", folder / "dev", folder / "by-id"};

private:
    std::deque<PseudoTerminal> terminals;
};

}

TEST_CASE("PortNames: a device without an entry gets the first free number, by its lasting path, and keeps it") {
    Computer computer;
    const std::string usb = computer.Plug("ttyUSB0", "usb-maker_b-if00").string();
    const std::string second = computer.Plug("ttyS10").string();
    const std::string first = computer.Plug("ttyS2").string();
    computer.Plug("ttyS0");
    computer.folder.WriteFile("sys/console/active", "tty0 ttyS0\n");
    fs::create_symlink(computer.roots.devices / "ttyUSB0", computer.roots.byId / "usb-of-another-rule");
    fs::create_symlink("nowhere", computer.roots.byId / "broken");
    fs::create_directories(computer.roots.terminalClass / "ttyS3" / "device"); // without a node
    computer.folder.WriteFile("KEL.INI", "[PORTS]\nCOM2=/dev/away\nCOM4=\n");
    CHECK(computer.Find() == "COM1=ttyS2, COM3=ttyS10, COM5=usb-maker_b-if00");
    const std::string expected =
        "[PORTS]\nCOM2=/dev/away\nCOM4=\nCOM1=" + first + "\nCOM3=" + second + "\nCOM5=" + usb + "\n";
    CHECK(computer.Entries() == expected);
    fs::remove(computer.roots.devices / "ttyS2");
    CHECK(computer.Find() == "COM3=ttyS10, COM5=usb-maker_b-if00");
    CHECK(computer.Find(u"COM1") == "COM1=ttyS2, COM3=ttyS10, COM5=usb-maker_b-if00");
    CHECK(computer.Entries() == expected);
}

TEST_CASE("PortNames: an entry names a device by any of its paths, and the current port keeps its place in the list") {
    Computer computer;
    computer.Plug("ttyUSB0", "usb-a");
    computer.Plug("ttyUSB1", "usb-b");
    computer.Plug("ttyUSB2", "usb-c");
    const std::string dev = computer.roots.devices.string();
    const std::string entries = "[Ports]\r\ncom12=" + dev + "/ttyUSB2\r\nCOM9=" + dev +
                                "/../dev/ttyUSB1\r\nCOM7=" + fs::canonical(computer.roots.byId / "usb-a").string() +
                                "\r\n";
    computer.folder.WriteFile("KEL.INI", entries);
    const std::string seven = "COM7=" + fs::canonical(computer.roots.byId / "usb-a").filename().string();
    CHECK(computer.Find(u"COM12") == seven + ", COM9=ttyUSB1, COM12=ttyUSB2");
    CHECK(computer.Find(u"com8") == seven + ", com8=, COM9=ttyUSB1");
    CHECK(computer.Entries() == entries);
}

TEST_CASE("PortNames: a port that is in use is not offered, and the search leaves no trace on a line") {
    Computer computer;
    const fs::path device = computer.Plug("ttyUSB0");
    computer.Plug("ttyUSB1");
    computer.folder.WriteFile("KEL.INI", "");
    // Entries that lead to no line are looked at and never offered.
    computer.folder.WriteFile("file", "");
    REQUIRE(::mkfifo((computer.folder / "pipe").c_str(), 0600) == 0);
    computer.folder.WriteFile("KEL.INI", "[PORTS]\nCOM3=/dev/null\nCOM4=" + (computer.folder / "file").string() +
                                             "\nCOM5=" + (computer.folder / "pipe").string() + "\nCOM6=/\n");
    const int holder = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    REQUIRE(holder >= 0);
    struct Hold {
        std::string how;
        std::function<int()> take;
        std::function<int()> release;
    };
    const Hold holds[] = {
        {"lock", [&] { return ::flock(holder, LOCK_EX); }, [&] { return ::flock(holder, LOCK_UN); }},
        {"exclusive mode", [&] { return ::ioctl(holder, TIOCEXCL); }, [&] { return ::ioctl(holder, TIOCNXCL); }}};
    for (const Hold& hold : holds) {
        CAPTURE(hold.how);
        REQUIRE(hold.take() == 0);
        CHECK(computer.Find() == "COM2=ttyUSB1");
        CHECK(computer.Find(u"COM1") == "COM1=ttyUSB0, COM2=ttyUSB1");
        REQUIRE(hold.release() == 0);
        CHECK(computer.Find() == "COM1=ttyUSB0, COM2=ttyUSB1");
    }
    CHECK(::flock(holder, LOCK_EX | LOCK_NB) == 0);
    int isExclusive = 1;
    CHECK((::ioctl(holder, TIOCGEXCL, &isExclusive) == 0 && isExclusive == 0));
    ::close(holder);
}

TEST_CASE("PortNames: programs that number devices at the same time lose no entry and number each device once") {
    Computer computer;
    constexpr int deviceCount = 8;
    std::vector<SerialDevice> devices;
    for (int number = 0; number < deviceCount; ++number) {
        const fs::path path = computer.Plug("ttyUSB" + std::to_string(number));
        devices.push_back({path, DeviceId(path)});
    }
    computer.folder.WriteFile("KEL.INI", "; kept\n[PROGRAM PATHS]\n8=NC\n");
    fs::permissions(computer.KelIni(), fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read);
    std::vector<pid_t> programs;
    for (int number = 0; number < deviceCount; ++number) {
        const pid_t program = ::fork();
        REQUIRE(program >= 0);
        if (program == 0) {
            // Each begins with another device, and in the end each has named all.
            for (int turn = 0; turn < deviceCount; ++turn)
                AssignPorts(computer.KelIni(), {devices[static_cast<std::size_t>((number + turn) % deviceCount)]}, 60s);
            ::_exit(0);
        }
        programs.push_back(program);
    }
    for (const pid_t program : programs) {
        int status = -1;
        CHECK((::waitpid(program, &status, 0) == program && status == 0));
    }
    const Profile profile(computer.Entries());
    std::set<dev_t> numbered;
    for (const Profile::Entry& entry : profile.Entries(u"PORTS"))
        CHECK(numbered.insert(DeviceId(ToPath(entry.value))).second);
    CHECK(numbered.size() == deviceCount);
    CHECK(computer.Entries().starts_with("; kept\n[PROGRAM PATHS]\n8=NC\n[PORTS]\nCOM1="));
    CHECK(fs::status(computer.KelIni()).permissions() ==
          (fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read));
}

TEST_CASE("PortNames: devices are numbered even if KEL.INI cannot be written, and no KEL.INI does harm") {
    Computer computer;
    for (int number = 0; number < 12; ++number)
        computer.Plug("ttyUSB" + std::to_string(number));
    const auto expectNumbers = [&] {
        CHECK(computer.Find().starts_with("COM1=ttyUSB0, COM2=ttyUSB1"));
        CHECK(computer.Find().ends_with("COM9=ttyUSB8"));
    };
    expectNumbers();
    CHECK_FALSE(fs::exists(computer.KelIni()));

    std::string binary;
    for (int byte = 0; byte < 4096; ++byte)
        binary.push_back(static_cast<char>(byte * 7));
    std::string crowded = "[PORTS]\n";
    while (crowded.size() < Profile::maxFileBytes)
        crowded += "X=/dev\n";
    for (const std::string& content : {binary, "\xFF\xFE" + binary, std::string(3 * Profile::maxFileBytes, '['),
                                       crowded, std::string(Profile::maxFileBytes, '[')}) {
        computer.folder.WriteFile("KEL.INI", content);
        expectNumbers();
        const std::string after = computer.Entries();
        // It has grown by the entries alone, or is unchanged where they have no room.
        CHECK((content.size() < Profile::maxFileBytes / 2 ? after.starts_with(content) : after == content));
    }

    computer.folder.WriteFile("KEL.INI", "[PORTS]\n");
    NativeFile other;
    REQUIRE(other.Open(computer.KelIni(), NativeFile::Access::Read));
    REQUIRE(other.Lock());
    const Profile numbered = AssignPorts(computer.KelIni(), FindSerialDevices(computer.roots), 1ms);
    CHECK(PortDevice(numbered, u"COM9") == computer.roots.devices / "ttyUSB8");
    CHECK(computer.Entries() == "[PORTS]\n");
}

TEST_CASE("PortNames: a port name is COM1 to COM256") {
    for (const char16_t* name : {u"COM1", u"com9", u"COM12", u"COM256"})
        CHECK(IsPortName(name));
    for (const char16_t* name : {u"", u"COM", u"COM0", u"COM01", u"COM257", u"COM-1", u"COM1x", u"COM 1", u"LPT1",
                                 u"COM99999999999", u"COM1\nCOM2"})
        CHECK_FALSE(IsPortName(name));
}
