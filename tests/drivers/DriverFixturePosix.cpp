#include "drivers/DriverFixturePosix.h"

namespace tarvin::test {

using namespace std::chrono_literals;

DriverFixture::DriverFixture() {
    folder.WriteFile("KEL.INI", "[PORTS]\nCOM1=" + (folder / "line").string() + "\n");
    names = std::make_unique<PortNames>(folder / "KEL.INI");
    port = MakeSerialPort(*names);
    LeadPortToDevice();
    DropOldBytes();
}

DriverFixture::~DriverFixture() {
    (void)port->Close();
    if (!isThere)
        Return();
}

// The last case may have left bytes on the line, in both directions.
void DriverFixture::DropOldBytes() {
    if (!port->Open(u"COM1"))
        return;
    std::uint8_t room[100];
    std::size_t byteCount = 0;
    do {
        port->Wait(20ms, SerialPort::Awaited::BytesToo);
        byteCount = port->Read(room).ValueOr(0);
    } while (byteCount > 0);
    (void)port->Close();
    (void)Driver().Receive(0, 0ms);
}

void DriverFixture::LeadPortToDevice() {
    std::filesystem::remove(folder / "line");
    std::filesystem::create_symlink(Driver().Device(), folder / "line");
}

std::string DriverFixture::Sent(std::size_t byteCount) {
    return Driver().Receive(byteCount, byteCount > 0 ? 10s : 0s);
}

void DriverFixture::Vanish() {
    Driver().Unplug();
    isThere = false;
}

void DriverFixture::Return() {
    Driver().Plug();
    isThere = true;
    LeadPortToDevice();
}

PortFixture::HoldShown DriverFixture::ShowsHold() const {
    // The serial core stops by itself, and the output that stands still tells.
    return Driver().IsSerialCore() ? HoldShown::WithOutput : HoldShown::AtOnce;
}

std::vector<std::unique_ptr<PortFixture>> MakePortFixtures() {
    std::vector<std::unique_ptr<PortFixture>> fixtures;
    fixtures.push_back(std::make_unique<DriverFixture>());
    return fixtures;
}

}
