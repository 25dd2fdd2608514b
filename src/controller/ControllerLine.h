#pragma once
// The controller's end of a serial line: bytes out and bytes in, each before a deadline. One thread at a time. No
// operation throws.

#include "base/Clock.h"
#include "base/Result.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin::controller {

class ControllerLine {
public:
    // HungUp: no program has the other end of a pseudo-terminal open, and none has opened it again within two seconds
    // or until the deadline. Failed: LastError says why.
    enum class Status { Done, TimedOut, HungUp, Failed };

    virtual ~ControllerLine() = default;

    // Waits for bytes and takes those that are there, up to `capacity`, in one read. `byteCount` is 0 unless the status
    // is Done. With a deadline in the past, takes only bytes that have already arrived.
    virtual Status Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline, std::size_t& byteCount) = 0;
    // Blocks until the system has taken all bytes. On a slow line they leave later.
    virtual Status Write(std::string_view bytes, Clock::TimePoint deadline) = 0;
    // Blocks until a program has the other end open. A serial device does not show that: it returns Done at once.
    virtual Status WaitForPeer(Clock::TimePoint deadline) = 0;
    virtual void Pause(Clock::Duration duration) = 0;

    // The reason of the last failure, for people.
    virtual const std::string& LastError() const = 0;
};

// Opens a serial device ("/dev/ttyUSB0", "COM3") with 8 data bits, no parity, 1 stop bit and no flow control. Drops
// bytes that wait in it.
Result<std::unique_ptr<ControllerLine>> OpenDevice(const std::string& device, unsigned bitsPerSecond);

// Makes a raw pseudo-terminal and the symbolic link `link` to its other end. Replaces a link that leads nowhere.
// Refuses a path that holds anything else. The link is removed with the line, and when SIGINT, SIGTERM, SIGHUP or
// SIGPIPE ends the process. One at a time in a process. Always fails on Windows.
Result<std::unique_ptr<ControllerLine>> MakePseudoTerminal(const std::filesystem::path& link);

}
