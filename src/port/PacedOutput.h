#pragma once
// Software flow control for a driver that goes on sending after an XOFF. Output is handed over a few characters ahead
// of the line, so that few characters follow an XOFF, whatever the driver and the adapter store. XOFF and XON are taken
// out of the received bytes. One thread uses it.

#include "base/Clock.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarvin {

class PacedOutput {
public:
    // How many characters the driver may hold ahead of the line.
    static constexpr std::size_t ahead = 16;

    explicit PacedOutput(const Clock& clock) : clock(clock) {}

    // Starts anew: the line is idle and nothing holds it. One character takes `characterTime` on the line; more than 0.
    void Start(Clock::Duration characterTime);

    // How many bytes the driver may get now; 0 while an XOFF holds the line.
    std::size_t Room() const;
    // The driver has taken this many bytes.
    void HandedOver(std::size_t byteCount);
    // How many of the bytes that were handed over may still have to be sent. An XOFF does not stop them.
    std::size_t UnsentCount() const;
    // When to look at Room again: late enough to be worth a write, early enough to keep the line busy.
    Clock::TimePoint NextWrite() const;

    // Removes XOFF and XON from received bytes; the last of them decides whether the line is held.
    void TakeFlowBytes(std::vector<std::uint8_t>& received);
    bool IsHeld() const { return isHeld; }
    void Release() { isHeld = false; }

private:
    const Clock& clock;
    Clock::Duration characterTime = std::chrono::milliseconds(1);
    Clock::TimePoint lineFree; // when the line has sent all that was handed over
    bool isHeld = false;
};

}
