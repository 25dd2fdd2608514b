#pragma once
// What crosses the line, mirrored for both who read it: the trace of the window and the comms log. Costs next to
// nothing while neither is wanted. Knows nothing of ports. Monitor thread only.

#include "line/LineTrace.h"
#include "logging/CommsLog.h"
#include "port/SerialPort.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace tarvin {

class LineRecorder {
public:
    LineRecorder(LineTrace& lineTrace, CommsLog& commsLog) : trace(lineTrace), log(commsLog) {}

    void Received(std::span<const std::uint8_t> bytes);
    // A text is one line of the log, a single byte or a block of file bytes adds to what waits for one.
    void SentText(std::string_view text);
    void SentByte(std::uint8_t byte, bool continuation);
    void SentBlock(int askedCount, std::span<const std::uint8_t> bytes);
    // Names each hold that has changed, with its new value.
    void HoldsChanged(const LineStatus& previous, const LineStatus& present);
    // Puts what waits into the log. To be called before the log ends.
    void FlushPending();

private:
    void AddPending(std::uint8_t byte);

    // However long the line is held: what waits is bounded by this.
    static constexpr std::size_t longestPending = 64 * 1024;

    LineTrace& trace;
    CommsLog& log;
    std::string pendingTransmitText;
};

}
