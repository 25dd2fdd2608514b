#include "port/PacedOutput.h"

#include "port/SerialPort.h"

#include <algorithm>
#include <cassert>

namespace tarvin {

// The clock of the pace runs 1 % slower than the line. An adapter may be slow by 0.5 %; with an exact clock bytes would
// pile up in it, and all of them would follow an XOFF.
void PacedOutput::Start(Clock::Duration timeOnLine) {
    assert(timeOnLine > Clock::Duration::zero());
    characterTime = timeOnLine + timeOnLine / 100;
    lineFree = clock.Now();
    isHeld = false;
}

std::size_t PacedOutput::UnsentCount() const {
    const auto left = lineFree - clock.Now();
    if (left <= Clock::Duration::zero())
        return 0;
    // A character counts until its last bit is on the line.
    return static_cast<std::size_t>((left + characterTime - Clock::Duration(1)) / characterTime);
}

std::size_t PacedOutput::Room() const {
    return isHeld ? 0 : ahead - std::min(ahead, UnsentCount());
}

void PacedOutput::HandedOver(std::size_t byteCount) {
    lineFree = std::max(lineFree, clock.Now()) + characterTime * static_cast<Clock::Duration::rep>(byteCount);
}

Clock::TimePoint PacedOutput::NextWrite() const {
    return lineFree - characterTime * static_cast<Clock::Duration::rep>(ahead / 2);
}

void PacedOutput::TakeFlowBytes(std::vector<std::uint8_t>& received) {
    std::erase_if(received, [this](std::uint8_t byte) {
        if (byte != xon && byte != xoff)
            return false;
        isHeld = byte == xoff;
        return true;
    });
}

}
