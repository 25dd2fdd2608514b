#pragma once
// A USB serial adapter with an FT232R as a model: what the chip does with its requests and packets, and the far end of
// its line. The kernel's driver ftdi_sio binds to it. Sends on its line at the speed that it was set to. Any thread.

#include "base/Clock.h"
#include "base/Mutex.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::test {

// The eight bytes with which each transfer on the control endpoint begins.
struct UsbRequest {
    std::uint8_t type = 0;
    std::uint8_t number = 0;
    std::uint16_t value = 0;
    std::uint16_t index = 0;
    std::uint16_t length = 0;
};

using UsbBytes = std::vector<std::uint8_t>;

class UsbAdapter {
public:
    // Errors of a received character, and modem lines, by their bits in the chip's status bytes.
    enum LineError : std::uint8_t { noError = 0, overrun = 2, parityError = 4, framingError = 8, breakReceived = 16 };
    enum ModemLine : std::uint8_t { cts = 0x10, dsr = 0x20 };

    static constexpr std::uint16_t vendor = 0x0403;
    static constexpr std::uint16_t product = 0x6001;
    static constexpr std::uint16_t version = 0x0600;
    static constexpr const char* productName = "Line Adapter";

    // The far end of the line.

    // The bytes arrive, each with the error.
    void Arrive(std::string_view bytes, LineError error = noError);
    // Waits until `byteCount` bytes have been sent or `longest` has passed. Takes and returns all that were sent.
    std::string TakeSent(std::size_t byteCount, Clock::Duration longest);
    void SetModemLine(ModemLine line, bool isOn);

    // What the driver has set.
    struct Setup {
        int bitsPerSecond = 9600;
        int dataBits = 8;
        int parity = 0;      // none, odd, even, mark, space
        int stopBits = 0;    // one, one and a half, two
        int flowControl = 0; // bits: RTS and CTS, DTR and DSR, XON and XOFF
        int latencyMilliseconds = 16;
        bool isDtrOn = false;
        bool isRtsOn = false;
    };
    Setup Settings() const;

    // The bus.

    // Answers a request, with bytes if it asks for some. None: the request is refused.
    std::optional<UsbBytes> Answer(const UsbRequest& request);
    // True if the chip takes a packet of bytes for the line now.
    bool HasRoom() const;
    void TakePacket(const UsbBytes& packet);
    // The packet for the computer, if one is due: at a change of a modem line, when a packet is full, and whenever the
    // latency timer has run out.
    std::optional<UsbBytes> NextPacket(std::size_t room);
    // Does what is due on the line. Returns when to call again at the latest.
    Clock::TimePoint Advance();
    // `wake` is called after each event that makes a packet due.
    void OnEvent(std::function<void()> wake);

private:
    struct Received {
        std::uint8_t byte;
        std::uint8_t error;
    };

    bool SetFromRequest(const UsbRequest& request) REQUIRES(mutex);
    Clock::Duration CharacterTime() const REQUIRES(mutex);
    bool IsHeld() const REQUIRES(mutex);
    Clock::TimePoint PacketDue() const REQUIRES(mutex);

    mutable Mutex mutex;
    Condition sentMore;
    std::function<void()> wake GUARDED_BY(mutex);
    Setup setup GUARDED_BY(mutex);
    std::deque<Received> received GUARDED_BY(mutex);
    std::deque<std::uint8_t> toSend GUARDED_BY(mutex);
    std::string sent GUARDED_BY(mutex);
    std::uint8_t modemLines GUARDED_BY(mutex) = cts | dsr;
    bool hasModemChange GUARDED_BY(mutex) = false;
    std::uint8_t xonByte GUARDED_BY(mutex) = 0;
    std::uint8_t xoffByte GUARDED_BY(mutex) = 0;
    bool isXoffHeld GUARDED_BY(mutex) = false;
    Clock::TimePoint lineFree GUARDED_BY(mutex);   // when the character on the line is over
    Clock::TimePoint lastPacket GUARDED_BY(mutex); // to the computer
};

}
