#include "drivers/DriverLinePosix.h"

#include "drivers/FarEndPosix.h"
#include "drivers/UsbRedirectionPosix.h"
#include "harness/WaitUntil.h"

#include <cassert>
#include <fstream>
#include <stdexcept>

namespace tarvin::test {

namespace {

namespace fs = std::filesystem;

const fs::path terminals = "/sys/class/tty";
DriverLine* theDriver = nullptr;

void Require(bool condition, const std::string& what) {
    if (!condition)
        throw std::runtime_error(what);
}

void WriteSystemFile(const fs::path& path, const std::string& text) {
    std::ofstream file(path);
    file << text << std::flush;
    Require(file.good(), path.string());
}

std::string ReadSystemFile(const fs::path& path) {
    std::ifstream file(path);
    std::string line;
    std::getline(file, line);
    return line;
}

// The terminal of the USB device with this product name; empty if there is none.
fs::path UsbTerminal(const std::string& productName) {
    for (const auto& entry : fs::directory_iterator(terminals)) {
        const std::string name = entry.path().filename().string();
        std::error_code isGone;
        const fs::path port = fs::canonical(entry.path() / "device", isGone);
        if (name.starts_with("ttyUSB") && !isGone &&
            ReadSystemFile(port.parent_path().parent_path() / "product") == productName)
            return "/dev/" + name;
    }
    return {};
}

// A line whose far end is a device as well.
class WiredLine : public DriverLine {
public:
    explicit WiredLine(const fs::path& farEndPath) : farEnd(farEndPath) {}

    void Send(std::string_view bytes) override { farEnd.Write(bytes); }
    std::string Receive(std::size_t byteCount, std::chrono::milliseconds longest) override {
        return farEnd.Read(byteCount, longest);
    }

protected:
    FarEnd farEnd;
};

// A port of the board. Its device goes when the driver lets it go.
class BoardLine : public WiredLine {
public:
    BoardLine() : WiredLine("/dev/line/board") {
        const fs::path chip = fs::canonical(terminals / "ttyS1" / "device");
        chipName = chip.filename().string();
        driver = fs::canonical(chip / "driver");
    }
    const char* Name() const override { return "16550"; }
    fs::path Device() override { return "/dev/ttyS1"; }
    void Unplug() override { WriteSystemFile(driver / "unbind", chipName); }
    void Plug() override { WriteSystemFile(driver / "bind", chipName); }
    bool IsSerialCore() const override { return true; }

private:
    std::string chipName;
    fs::path driver;
};

// QEMU's own adapter.
class EmulatedAdapterLine : public WiredLine {
public:
    EmulatedAdapterLine() : WiredLine("/dev/line/usb-serial"), monitor("/dev/line/monitor") {
        // An error after an earlier run in the same machine: the greeting counts once.
        (void)Command(R"({"execute":"qmp_capabilities"})");
    }
    const char* Name() const override { return "usb-serial"; }
    fs::path Device() override {
        Require(WaitUntil([] { return !UsbTerminal(productName).empty(); }), "no terminal for usb-serial");
        return UsbTerminal(productName);
    }
    void Unplug() override {
        (void)Command(R"({"execute":"device_del","arguments":{"id":"plugged"}})");
        Require(WaitUntil([] { return UsbTerminal(productName).empty(); }), "usb-serial stays");
    }
    void Plug() override {
        // QEMU frees the wire of the last device a moment after that device.
        Require(WaitUntil([this] {
                    return Command(R"({"execute":"device_add","arguments":)"
                                   R"({"driver":"usb-serial","chardev":"usb-serial","id":"plugged"}})");
                }),
                "usb-serial does not come back");
        Device();
    }

private:
    static constexpr const char* productName = "QEMU USB SERIAL";

    // QEMU's monitor answers each command with a line; events come in between. False for an error.
    bool Command(const std::string& command) {
        monitor.Write(command + "\n");
        std::string answer;
        const auto has = [&](const char* word) { return answer.find(word) != std::string::npos; };
        Require(WaitUntil([&] {
                    answer += monitor.Read(1, std::chrono::milliseconds(10));
                    return has("\"return\"") || has("\"error\"");
                }),
                command);
        return has("\"return\"");
    }

    FarEnd monitor;
};

// A CDC-ACM device that this machine plays itself: the other side of its bus is a terminal too.
class GadgetLine : public WiredLine {
public:
    GadgetLine() : WiredLine("/dev/ttyGS0") {
        GadgetLine::Device();
        authorization = fs::canonical(terminals / "ttyACM0" / "device" / "..") / "authorized";
    }
    const char* Name() const override { return "cdc-acm"; }
    fs::path Device() override {
        Require(WaitUntil([] { return fs::exists(path); }), path);
        return path;
    }
    // The bus of the gadget cannot be disconnected and connected again. A device that is no longer authorised loses its
    // driver in the same way.
    void Unplug() override {
        WriteSystemFile(authorization, "0");
        Require(WaitUntil([] { return !fs::exists(path); }), "cdc-acm stays");
    }
    void Plug() override {
        WriteSystemFile(authorization, "1");
        Device();
    }

private:
    static constexpr const char* path = "/dev/ttyACM0";
    fs::path authorization;
};

// Our own adapter.
class AdapterLine : public DriverLine {
public:
    AdapterLine() : bus(adapter, "/dev/line/usb-redirection") { bus.Plug(); }
    const char* Name() const override { return "ftdi_sio"; }
    fs::path Device() override {
        Require(WaitUntil([] { return !UsbTerminal(UsbAdapter::productName).empty(); }), "no terminal for the adapter");
        return UsbTerminal(UsbAdapter::productName);
    }
    void Send(std::string_view bytes) override { adapter.Arrive(bytes); }
    std::string Receive(std::size_t byteCount, std::chrono::milliseconds longest) override {
        return adapter.TakeSent(byteCount, longest);
    }
    void Unplug() override {
        bus.Unplug();
        Require(WaitUntil([] { return UsbTerminal(UsbAdapter::productName).empty(); }), "the adapter stays");
    }
    void Plug() override {
        bus.Plug();
        Device();
    }
    bool HasSpeed() const override { return true; }
    UsbAdapter* Adapter() override { return &adapter; }

private:
    UsbAdapter adapter;
    UsbRedirection bus;
};

}

std::unique_ptr<DriverLine> MakeDriverLine(std::string_view name) {
    if (name == "16550")
        return std::make_unique<BoardLine>();
    if (name == "usb-serial")
        return std::make_unique<EmulatedAdapterLine>();
    if (name == "cdc-acm")
        return std::make_unique<GadgetLine>();
    if (name == "ftdi_sio")
        return std::make_unique<AdapterLine>();
    return nullptr;
}

DriverLine& Driver() {
    assert(theDriver != nullptr);
    return *theDriver;
}

void SetDriver(DriverLine& driver) {
    theDriver = &driver;
}

}
