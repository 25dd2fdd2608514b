#pragma once
// A serial port with the semantics of the Windows communications calls, on every system.
//
// One thread at a time uses a port; Wake and CancelWrite may be called from any thread. A failure of Open leaves the
// port closed; a failure of anything else but Close leaves it open. `Error::isGone` says that the device has vanished:
// the port works again only after Close and a new Open.

#include "base/Result.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace tarvin {

class PortNames;

// The characters of software flow control.
inline constexpr std::uint8_t xon = 0x11;
inline constexpr std::uint8_t xoff = 0x13;

// Why output waits: for CTS, DSR, RLSD or an XON. `xoffSent` is the other direction: this side has stopped the other.
struct LineHolds {
    bool cts = false;
    bool dsr = false;
    bool rlsd = false;
    bool xoff = false;
    bool xoffSent = false;
    bool operator==(const LineHolds&) const = default;
};

// Errors that the driver has seen in received characters. The characters themselves may have arrived or be missing.
struct LineErrors {
    std::uint32_t parity = 0;
    std::uint32_t framing = 0;
    std::uint32_t overrun = 0; // of the receiver or of the driver's queue
    std::uint32_t breaks = 0;
    bool operator==(const LineErrors&) const = default;
};

struct LineStatus {
    LineErrors errors; // since the last status. Windows reports each kind at most once. None where a driver counts none
    LineHolds holds;
    std::size_t inputCount = 0;  // bytes received and not read yet
    std::size_t outputCount = 0; // bytes written and not on the line yet
};

struct FlowControl {
    bool software = false;
    bool ctsOutput = false;
    bool dsrOutput = false;
    bool dsrSensitivity = false; // Windows only: the driver ignores bytes that arrive while DSR is off
    bool rtsHandshake = false;
    bool dtrHandshake = false; // Windows only: on POSIX DTR stays on
};

class SerialPort {
public:
    virtual ~SerialPort() = default;

    virtual bool IsOpen() const = 0;

    // Opens the device that the name stands for ("COM1"), for this program alone. Requires a closed port.
    virtual Result<> Open(const KelText& portName) = 0;

    // The port is closed afterwards, whatever the result. A closed port stays closed, as a success.
    virtual Result<> Close() = 0;

    // The steps of configuration, in the order in which a caller takes them. Each requires an open port. A caller may
    // go on after a step that failed.

    // Asks the driver for queues of these sizes. POSIX keeps the sizes of the kernel.
    virtual Result<> SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) = 0;

    // Reads the state of the device into a copy that the port keeps.
    virtual Result<> FetchState() = 0;

    // Puts a mode such as "baud=2400 parity=N data=8 stop=1" into the copy. The device does not see it before
    // CommitState. Fails with a text that is no mode, or a mode that the system does not have.
    virtual Result<> ApplyMode(const std::string& mode) = 0;

    // Puts the flow control into the copy and gives the copy to the device. Without `flow` the handshake stays as
    // FetchState found it. Fails if the device runs in another mode than asked; the reason names the mode that it
    // offers. After a failure the device runs in the mode that it had before, as far as it takes that.
    virtual Result<> CommitState(const std::optional<FlowControl>& flow) = 0;

    // The longest time that one Write may block. POSIX has no use for it: a write never blocks there.
    virtual Result<> SetTimeouts(std::chrono::milliseconds writeTotal) = 0;

    // Drops the bytes that wait for the line, then the bytes that have arrived. Requires an open port.
    virtual void Purge() = 0;

    // Holds and counts at this moment. Never blocks. Requires an open port. An input count may be 1 although a read
    // gives no byte: the read then fails, and its reason tells what has happened to the device. A driver that obeys
    // XOFF by itself may tell the hold only once output waits, and up to half a second late.
    virtual Result<LineStatus> GetStatus() = 0;

    // Moves bytes that have arrived into `room` and gives their number, which may be 0. Never blocks. Requires an open
    // port and room for at least one byte.
    virtual Result<std::size_t> Read(std::span<std::uint8_t> room) = 0;

    // Gives the bytes to the driver. Requires an open port. `byteCount` is set in every case, after a failure too: the
    // driver has taken that many. Less than all is a success too: the write time-out has passed, or CancelWrite has
    // ended the write.
    virtual Result<> Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) = 0;

    // Ends a hold by XOFF, and drops the bytes that it holds. Later bytes go out, until the next XOFF. Requires an open
    // port with software flow control.
    virtual Result<> ReleaseXoff() = 0;

    enum class Awaited { BytesToo, WakeOnly };

    // Blocks until bytes have arrived, Wake is called, a modem line is due for a look, or `longest` has passed.
    // `longest` is not negative. WakeOnly leaves out bytes and modem lines: a port that holds bytes and cannot be read
    // would end each wait at once. Also for a closed port. May return early, on Windows after each millisecond.
    virtual void Wait(std::chrono::nanoseconds longest, Awaited awaited) = 0;

    // Ends the present wait, or the next one. Any thread.
    virtual void Wake() = 0;

    // Ends a write that blocks; later writes on Windows take nothing. For the end of the program. Any thread.
    virtual void CancelWrite() {}

    // What the user should know of a port that works all the same, such as a right that is missing. Each text is given
    // once in the life of the object, after the opening that has found it.
    virtual std::optional<KelText> TakeAdvice() { return std::nullopt; }
};

// The back end of this system, closed. `names` must outlive it.
std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names);

}
