#pragma once
// The port on the driver of this run, in the form in which the contract of SerialPort is checked.

#include "drivers/DriverLinePosix.h"
#include "harness/TemporaryFolder.h"
#include "port/PortContract.h"
#include "port/PortNames.h"

namespace tarvin::test {

class DriverFixture : public PortFixture {
public:
    DriverFixture();
    ~DriverFixture() override;

    std::string_view Name() const override { return Driver().Name(); }
    SerialPort& Port() override { return *port; }
    std::string Mode() const override { return "baud=115200 parity=N data=8 stop=1"; }
    void Arrive(std::string_view bytes) override { Driver().Send(bytes); }
    std::string Sent(std::size_t byteCount) override;
    void Vanish() override;
    // Brings the device back, perhaps under another name.
    void Return();
    HoldShown ShowsHold() const override;
    const std::filesystem::path& Folder() const { return folder.Path(); }

private:
    void LeadPortToDevice();
    void DropOldBytes();

    TemporaryFolder folder;
    std::unique_ptr<PortNames> names;
    std::unique_ptr<SerialPort> port;
    bool isThere = true;
};

}
