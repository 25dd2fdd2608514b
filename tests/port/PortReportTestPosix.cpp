// Ports are inspected on a computer made of pseudo-terminals and folders.

#include "base/FirstUseMessages.h"
#include "harness/OtherUserPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryFolder.h"
#include "port/DeviceRightsPosix.h"
#include "port/PortReportPosix.h"

#include <deque>
#include <string>

#include <doctest/doctest.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

using namespace tarvin;
using namespace tarvin::test;
namespace fs = std::filesystem;

namespace {

class Computer {
public:
    Computer() {
        for (const fs::path& path :
             {roots.devices.terminalClass, roots.devices.devices, roots.devices.byId, roots.processes, roots.udevData})
            fs::create_directories(path);
        folder.WriteFile("KEL.INI", "");
    }

    PseudoTerminal& Plug(const std::string& name) {
        fs::create_directories(roots.devices.terminalClass / name / "device");
        PseudoTerminal& terminal = terminals.emplace_back();
        fs::create_symlink(terminal.Device(), roots.devices.devices / name);
        return terminal;
    }

    // As the kernel shows it: the terminal is below an interface of the USB device.
    PseudoTerminal& PlugUsb(const std::string& name) {
        const fs::path usb = folder / ("usb-of-" + name);
        fs::create_directories(usb / "interface" / name);
        fs::create_directories(folder / "drivers" / "ftdi_sio");
        fs::create_directory_symlink(folder / "drivers" / "ftdi_sio", usb / "interface" / name / "driver");
        for (const auto& [file, content] : {std::pair{"idVendor", "0403\n"},
                                            {"manufacturer", " FT\x01"
                                                             "DI \nsecond line"},
                                            {"product", "FT232R USB UART\n"},
                                            {"serial", "A10KXYZ\n"},
                                            {"dev", "189:5\n"}})
            folder.WriteFile("usb-of-" + name + "/" + file, content);
        fs::create_directories(roots.devices.terminalClass / name);
        fs::create_directory_symlink(usb / "interface" / name, roots.devices.terminalClass / name / "device");
        PseudoTerminal& terminal = terminals.emplace_back();
        fs::create_symlink(terminal.Device(), roots.devices.devices / name);
        return terminal;
    }

    // A process with this device open; without one, with a file of a server in its place.
    void Run(const std::string& number, const std::string& name, const fs::path& device = "/net/away") {
        fs::create_directories(roots.processes / number / "fd");
        folder.WriteFile("proc/" + number + "/comm", name + "\n");
        fs::create_symlink(device, roots.processes / number / "fd" / "3");
    }

    void TellUdev(dev_t id, const std::string& line) {
        folder.WriteFile("udev/c" + std::to_string(major(id)) + ":" + std::to_string(minor(id)),
                         "E:ID_VENDOR=x\n" + line + "\n");
    }

    std::vector<PortReport> Inspect(const KelText& currentPort = u"", const KelText& ownPort = u"") const {
        return InspectPorts(folder / "KEL.INI", currentPort, ownPort, roots);
    }

    TemporaryFolder folder;
    InspectionRoots roots = {{folder / "sys", folder / "dev", folder / "by-id"}, folder / "proc", folder / "udev"};

private:
    std::deque<PseudoTerminal> terminals;
};

std::string Told(const PortReport& report) {
    std::string told = ToUtf8(report.name) + ": " + ToUtf8(DescribeState(report));
    for (const PortAdvice& advice : report.advice)
        told += " | " + ToUtf8(advice.text) + (advice.command.empty() ? "" : " $ " + ToUtf8(advice.command));
    return told;
}

}

TEST_CASE("PortReport: a USB adapter is described by its maker, and another one by the name of its link") {
    Computer computer;
    computer.PlugUsb("ttyUSB0");
    const fs::path second = computer.Plug("ttyUSB1").Device();
    fs::create_symlink(second, computer.roots.devices.byId / "usb-Prolific_Cable_2303-if00-port0");
    const auto reports = computer.Inspect(u"COM7");
    REQUIRE(reports.size() == 3);
    CHECK(reports[0].maker == u"FTDI");
    CHECK(reports[0].product == u"FT232R USB UART");
    CHECK(reports[0].serialNumber == u"A10KXYZ");
    CHECK(reports[0].driver == u"ftdi_sio");
    CHECK(Told(reports[0]) == "COM1: free");
    CHECK(reports[1].product == u"Prolific Cable 2303");
    CHECK(Told(reports[2]).starts_with("COM7: not plugged in | The device of COM7 is not there."));
}

TEST_CASE("PortReport: a port in use names the program, keeps its hold, and the caller's own is left alone") {
    Computer computer;
    const fs::path device = computer.PlugUsb("ttyUSB0").Device();
    const int holder = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    REQUIRE(holder >= 0);
    CHECK(Told(computer.Inspect()[0]) == "COM1: free");
    REQUIRE(::flock(holder, LOCK_EX) == 0);
    CHECK(Told(computer.Inspect()[0]).starts_with("COM1: busy | Another program uses "));
    CHECK(Told(computer.Inspect(u"COM1", u"com1")[0]) == "COM1: in use by this program");
    computer.Run("12", "sshd");
    computer.Run("345", "minicom", device);
    computer.Run("self", "no number", device);
    computer.Run(std::to_string(::getpid()), "this one", device);
    CHECK(Told(computer.Inspect()[0]).starts_with("COM1: busy: minicom (process 345) | minicom (process 345) uses "));
    REQUIRE(::flock(holder, LOCK_UN) == 0);
    CHECK(Told(computer.Inspect()[0]).starts_with("COM1: free | minicom (process 345) has "));
    REQUIRE(::ioctl(holder, TIOCEXCL) == 0);
    CHECK(Told(computer.Inspect()[0]).starts_with("COM1: busy"));
    int isExclusive = 0;
    CHECK((::ioctl(holder, TIOCGEXCL, &isExclusive) == 0 && isExclusive != 0));
    CHECK(::flock(holder, LOCK_EX | LOCK_NB) == 0);
    ::close(holder);
}

TEST_CASE("PortReport: a modem manager is told only where it may open the device") {
    Computer computer;
    const fs::path usb = computer.PlugUsb("ttyUSB0").Device();
    computer.Plug("ttyS0");
    const auto advised = [&] {
        return ToUtf8(computer.Inspect()[1].advice.empty() ? KelText() : computer.Inspect()[1].advice.back().command);
    };
    CHECK(advised() == "");
    computer.Run("77", "ModemManager");
    CHECK(advised() == "sudo systemctl disable --now ModemManager");
    CHECK(Told(computer.Inspect()[0]) == "COM1: free");
    for (const dev_t id : {DeviceId(usb), makedev(189, 5)}) {
        computer.TellUdev(id, "E:ID_MM_DEVICE_IGNORE=1");
        CHECK(advised() == "");
        computer.TellUdev(id, "E:ID_MM_DEVICE_IGNORE=0");
        CHECK(advised() == "sudo systemctl disable --now ModemManager");
    }
}

TEST_CASE("PortReport: the group is advised only if it may open the device and the user lacks it") {
    DeviceRights rights;
    rights.device = u"/dev/ttyUSB0";
    rights.mode = 0660;
    rights.group = u"dialout";
    rights.user = u"o'brien";
    CHECK(AdviceFor(rights).command == u"sudo usermod -aG dialout 'o'\\''brien'");
    rights.user = u"anna";
    rights.isMember = true;
    CHECK(AdviceFor(rights).command.empty());
    CHECK(ToUtf8(AdviceFor(rights).text).find("Log out and in again") != std::string::npos);
    rights.hasGroup = true;
    CHECK(ToUtf8(AdviceFor(rights).text).find("refuses") != std::string::npos);
    rights.hasGroup = rights.isMember = false;
    for (const mode_t mode : {mode_t{0600}, mode_t{0640}, mode_t{0666 & ~0040}}) {
        rights.mode = mode;
        CHECK(AdviceFor(rights).command == u"sudo chown anna /dev/ttyUSB0");
    }
    rights.mode = 0660;
    rights.isGroupOfRoot = true;
    CHECK(AdviceFor(rights).command == u"sudo chown anna /dev/ttyUSB0");
}

TEST_CASE("PortReport: a device without permission is told with its group") {
    Computer computer;
    const fs::path device = computer.Plug("ttyUSB0").Device();
    fs::permissions(device, fs::perms::none);
    (void)computer.Inspect(); // gives the device its name while KEL.INI may be written
    fs::permissions(computer.folder.Path(), fs::perms::all);
    const OtherUser user;
    CHECK(Told(computer.Inspect()[0]).starts_with("COM1: no permission | No group may open "));
}
