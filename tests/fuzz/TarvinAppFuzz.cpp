// Feeds TarvinApp with bytes in any cut, and moves the clock between them. The input begins with settings; then each
// byte below 16 cuts the arrival, and 16 lets two seconds pass.

#include "harness/ProtocolHarness.h"
#include "protocol/TarvinApp.h"

#include <cstdlib>

using namespace tarvin;
using namespace tarvin::test;

namespace {

void Require(bool condition) {
    if (!condition)
        std::abort();
}

// Whatever arrives, answers are whole frames, and a file is open only while an upload runs.
void Check(const ProtocolHarness<TarvinApp>& harness, const std::string& sent) {
    Require(sent.empty() || sent.back() == '\r');
    const Transfer& transfer = harness.observed.transfer;
    Require(transfer.IsStoring() == (transfer.State() == TransferState::Uploading));
    Require(transfer.IsUnderWay() || transfer.Bar().position == 0);
}

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ProtocolHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/1.nc", "N1\r\nN2\n\nN3");
    harness.settings.transmitDelaySeconds = size > 0 && data[0] % 2 != 0 ? 1 : 0;
    std::string arrival;
    for (std::size_t at = 1; at < size; ++at) {
        if (data[at] == 16)
            Check(harness, harness.Wait(std::chrono::seconds(2)));
        else if (data[at] >= 16 || data[at] == '\r')
            arrival.push_back(static_cast<char>(data[at]));
        const bool isCut = data[at] < 16 || at + 1 == size;
        // The line drops the content of a full buffer.
        if (harness.received.Room().size() <= arrival.size())
            harness.received.Clear();
        if (isCut && arrival.size() < harness.received.Room().size())
            Check(harness, harness.Exchange(std::exchange(arrival, {})));
    }
    return 0;
}
