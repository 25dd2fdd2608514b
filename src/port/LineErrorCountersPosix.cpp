#include "port/LineErrorCountersPosix.h"

#include <optional>

#include <linux/serial.h>
#include <sys/ioctl.h>

namespace tarvin {

namespace {

// None where the driver has no counters, as that of a pseudo-terminal.
std::optional<LineErrors> Present(int device) {
    serial_icounter_struct counters = {};
    if (::ioctl(device, TIOCGICOUNT, &counters) != 0)
        return std::nullopt;
    LineErrors errors;
    errors.parity = static_cast<std::uint32_t>(counters.parity);
    errors.framing = static_cast<std::uint32_t>(counters.frame);
    errors.overrun = static_cast<std::uint32_t>(counters.overrun) + static_cast<std::uint32_t>(counters.buf_overrun);
    errors.breaks = static_cast<std::uint32_t>(counters.brk);
    return errors;
}

}

void LineErrorCounters::Start(int device) {
    const auto present = Present(device);
    hasCounters = present.has_value();
    known = present.value_or(LineErrors());
}

LineErrors LineErrorCounters::TakeNew(int device) {
    const auto present = hasCounters ? Present(device) : std::nullopt;
    if (!present)
        return {};
    // The counters wrap, and so do the differences.
    const LineErrors fresh = {present->parity - known.parity, present->framing - known.framing,
                              present->overrun - known.overrun, present->breaks - known.breaks};
    known = *present;
    return fresh;
}

}
