// The ports of this test program: the fake port and a pseudo-terminal. The pseudo-terminal is served by the POSIX back
// end or, with TARVIN_WINDOWS_PROGRAMS, by the Windows back end under Wine.

#include "harness/FakePort.h"
#include "port/PortContract.h"
#include "port/TerminalPortPosix.h"

namespace tarvin::test {

namespace {

class FakeFixture : public PortFixture {
public:
    std::string_view Name() const override { return "fake"; }
    SerialPort& Port() override { return port; }
    void Arrive(std::string_view bytes) override { line.Arrive(bytes); }
    std::string Sent(std::size_t) override { return line.TakeSent(); }
    void Vanish() override { line.isPresent = false; }

private:
    ManualClock clock;
    FakeLine line{clock};
    FakePort port{line};
};

}

std::vector<std::unique_ptr<PortFixture>> MakePortFixtures() {
    std::vector<std::unique_ptr<PortFixture>> fixtures;
    fixtures.push_back(std::make_unique<FakeFixture>());
    fixtures.push_back(std::make_unique<TerminalPort>());
    return fixtures;
}

}
