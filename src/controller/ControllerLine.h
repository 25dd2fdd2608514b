#pragma once
// The wire as the controller sees it: bytes out, bytes in, each within a time. Knows nothing of messages.
// One thread at a time. No operation throws.

#include "base/Clock.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin::controller {

class ControllerLine {
public:
    // HungUp: nobody has the other end open any more (or yet); that of a pseudo-terminal has not been opened again
    // within two seconds, or until the deadline. Failed: LastError says why.
    enum class Status { Done, TimedOut, HungUp, Failed };

    virtual ~ControllerLine() = default;

    // Waits until bytes have arrived and takes what is there, up to `capacity`, in one read. `byteCount` is 0 unless
    // the status is Done. A deadline that has passed takes what has arrived already.
    virtual Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) = 0;
    // Blocks until the system has taken all of the bytes. They have not left by then on a slow line.
    virtual Status Write(std::string_view bytes, Clock::TimePoint deadline) = 0;
    // Blocks until somebody has the other end open, where that can be seen, and returns Done at once elsewhere.
    virtual Status WaitForPeer(Clock::TimePoint deadline) = 0;
    // Blocks for the time.
    virtual void Pause(Clock::Duration duration) = 0;

    // The reason of the last failure, for a person.
    virtual const std::string& LastError() const = 0;
};

// A serial device ("/dev/ttyUSB0", "COM3"): 8 data bits, no parity, 1 stop bit, no flow control; what was waiting in it
// is thrown away. None leaves the reason in `error`.
std::unique_ptr<ControllerLine> OpenDevice(const std::string& device, unsigned bitsPerSecond, std::string& error);

// A new pseudo-terminal, raw, whose other end is found through the symbolic link `link`. A link that leads nowhere is
// replaced; whatever else has that name is refused. The link goes with the line, and when SIGINT, SIGTERM, SIGHUP or
// SIGPIPE ends the process. One at a time in a process. None leaves the reason in `error`, as on systems without such
// lines.
std::unique_ptr<ControllerLine> MakePseudoTerminal(const std::filesystem::path& link, std::string& error);

}
