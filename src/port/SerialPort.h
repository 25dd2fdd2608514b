#pragma once
// The serial port with the semantics of the Windows communications calls, whatever the system. Knows nothing of
// settings texts, protocols or message boxes. One back end for each system; the tests have one more.
//
// Monitor thread only, apart from Wake and CancelWrite.

#include "base/KelText.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace tarvin {

class PortNames;

// What stops and starts the other side where software holds the line.
inline constexpr std::uint8_t xon = 0x11;
inline constexpr std::uint8_t xoff = 0x13;

// What the line looks like at one instant. A hold means that output waits for the named thing.
struct LineStatus {
    std::uint32_t errors = 0;
    bool ctsHold = false;
    bool dsrHold = false;
    bool rlsdHold = false;
    bool xoffHold = false;
    bool xoffSent = false;
    std::size_t inputCount = 0;  // bytes received and not yet read
    std::size_t outputCount = 0; // bytes written and not yet on the line
};

// Why a step failed; false when it did not. `gone` tells that the device itself is no longer there.
struct PortError {
    bool failed = false;
    bool gone = false;
    KelText text;

    explicit operator bool() const { return failed; }
};

struct FlowControl {
    bool software = false;
    bool ctsOutput = false;
    bool dsrOutput = false;
    bool dsrSensitivity = false;
    bool rtsHandshake = false;
    bool dtrHandshake = false;
};

class SerialPort {
public:
    virtual ~SerialPort() = default;

    virtual bool IsOpen() const = 0;
    // By the name that machine settings carry ("COM1"). Exclusive.
    virtual PortError Open(const KelText& portName) = 0;
    virtual PortError Close() = 0;

    // The steps of configuration, in the order in which they are taken. The mode is the text
    // "baud=2400 parity=N data=8 stop=1". Without flow control the handshake stays as FetchState found it.
    virtual PortError SetQueueSizes(std::size_t inputBytes, std::size_t outputBytes) = 0;
    virtual PortError FetchState() = 0;
    virtual PortError ApplyMode(const std::string& mode) = 0;
    virtual PortError CommitState(const std::optional<FlowControl>& flow) = 0;
    virtual PortError SetTimeouts(std::chrono::milliseconds writeTotal) = 0;

    // Drops what waits for the line, then what has arrived.
    virtual void Purge() = 0;

    virtual PortError GetStatus(LineStatus& status) = 0;
    // At once, with whatever has arrived.
    virtual PortError Read(std::span<std::uint8_t> room, std::size_t& byteCount) = 0;
    // The whole buffer, or what the device took within the write time-out.
    virtual PortError Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) = 0;

    enum class Awaited { BytesToo, WakeOnly };

    // Returns when bytes have arrived, when Wake is called, when a modem line is due for a look, or after `longest`:
    // whichever comes first. For Wake and `longest` only if so wanted: a port that has bytes and cannot be read would
    // end every wait at once. Works without an open port.
    virtual void Wait(std::chrono::nanoseconds longest, Awaited awaited) = 0;

    // Ends the present wait, or the next one. Any thread.
    virtual void Wake() = 0;
    // Ends a write that blocks. Any thread.
    virtual void CancelWrite() {}
};

// The back end of this system. `names` must outlive it.
std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names);

}
