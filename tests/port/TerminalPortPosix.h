#pragma once
// A port on a pseudo-terminal, served by the POSIX back end or, with TARVIN_WINDOWS_PROGRAMS, by the Windows back end
// under Wine.

#include "harness/PseudoTerminalPosix.h"
#include "harness/RemotePortPosix.h"
#include "harness/TemporaryFolder.h"
#include "harness/WindowsProgramsPosix.h"
#include "port/PortContract.h"
#include "port/PortNames.h"

namespace tarvin::test {

class TerminalPort : public PortFixture {
public:
    TerminalPort() {
        if (AreWindowsProgramsMeant()) {
            LeadWindowsPortTo(terminal.Device());
            port = std::make_unique<RemotePort>();
            return;
        }
        folder.WriteFile("KEL.INI", "[PORTS]\nCOM1=" + terminal.Device().string() + "\n");
        names = std::make_unique<PortNames>(folder / "KEL.INI");
        port = MakeSerialPort(*names);
    }
    std::string_view Name() const override { return "pseudo-terminal"; }
    SerialPort& Port() override { return *port; }
    void Arrive(std::string_view bytes) override { terminal.Write(bytes); }
    std::string Sent(std::size_t byteCount) override {
        return terminal.Read(byteCount, std::chrono::seconds(byteCount > 0 ? 10 : 0));
    }
    void Vanish() override {
        terminal.Close();
        if (AreWindowsProgramsMeant())
            LeadWindowsPortTo(folder.Path());
    }
    // Wine differs from Windows here: a write waits until the line is free.
    HoldShown ShowsHold() const override { return AreWindowsProgramsMeant() ? HoldShown::Never : HoldShown::AtOnce; }

    PseudoTerminal terminal;
    TemporaryFolder folder;
    std::unique_ptr<PortNames> names;
    std::unique_ptr<SerialPort> port;
};

}
