#include "port/TerminalModePosix.h"

#include "base/Messages.h"

#include <algorithm>
#include <cassert>
#include <cstdint>
#include <string>

namespace tarvin {

namespace {

constexpr tcflag_t speedFlags = CBAUD | (CBAUD << IBSHIFT);
constexpr tcflag_t parityFlags = PARENB | PARODD | CMSPAR;
constexpr tcflag_t sizes[] = {CS5, CS6, CS7, CS8};

tcflag_t ParityFlags(PortMode::Parity parity) {
    switch (parity) {
    case PortMode::Parity::None:
        return 0;
    case PortMode::Parity::Even:
        return PARENB;
    case PortMode::Parity::Odd:
        return PARENB | PARODD;
    case PortMode::Parity::Mark:
        return PARENB | CMSPAR | PARODD;
    case PortMode::Parity::Space:
        return PARENB | CMSPAR;
    }
    return 0;
}

// Without parity the other two flags have no effect, and drivers leave them as they were.
tcflag_t EffectiveParity(const termios2& state) {
    return (state.c_cflag & PARENB) != 0 ? state.c_cflag & parityFlags : 0;
}

int DataBits(const termios2& state) {
    return static_cast<int>(std::ranges::find(sizes, state.c_cflag & CSIZE) - sizes) + 5;
}

int StopBits(const termios2& state) {
    return (state.c_cflag & CSTOPB) != 0 ? 2 : 1;
}

const char16_t* ParityWords(tcflag_t flags) {
    using namespace text::lineMode;
    if (flags == 0)
        return noParity;
    if ((flags & CMSPAR) != 0)
        return (flags & PARODD) != 0 ? markParity : spaceParity;
    return (flags & PARODD) != 0 ? oddParity : evenParity;
}

bool IsSpeedNear(std::int64_t asked, std::int64_t granted) {
    const std::int64_t difference = asked > granted ? asked - granted : granted - asked;
    return difference * 50 <= asked;
}

}

void PutMode(const PortMode& mode, termios2& state) {
    assert(mode.stopBits != PortMode::StopBits::OneAndAHalf);
    state.c_cflag &= ~(CSIZE | CSTOPB | parityFlags | speedFlags);
    state.c_cflag |= sizes[mode.dataBits - 5] | ParityFlags(mode.parity);
    if (mode.stopBits == PortMode::StopBits::Two)
        state.c_cflag |= CSTOPB;
    // BOTHER takes any speed, not only those of the list in termios.
    state.c_cflag |= BOTHER | (BOTHER << IBSHIFT);
    state.c_ispeed = state.c_ospeed = static_cast<speed_t>(mode.bitsPerSecond);
}

Result<> CheckGrantedMode(const termios2& asked, const termios2& granted) {
    if (IsSpeedNear(asked.c_ospeed, granted.c_ospeed) && DataBits(asked) == DataBits(granted) &&
        EffectiveParity(asked) == EffectiveParity(granted) && StopBits(asked) == StopBits(granted))
        return {};
    return Error{Filled(text::portReason::notGranted,
                        {FromUtf8(std::to_string(granted.c_ospeed)), FromUtf8(std::to_string(DataBits(granted))),
                         ParityWords(EffectiveParity(granted)),
                         StopBits(granted) == 1 ? text::lineMode::oneStopBit : text::lineMode::twoStopBits})};
}

Clock::Duration CharacterTime(const termios2& state) {
    const int bitCount = 1 + DataBits(state) + (EffectiveParity(state) != 0 ? 1 : 0) + StopBits(state);
    const auto bitsPerSecond = static_cast<Clock::Duration::rep>(std::max<speed_t>(state.c_ospeed, 1));
    return Clock::Duration(std::chrono::seconds(1)) * bitCount / bitsPerSecond;
}

}
