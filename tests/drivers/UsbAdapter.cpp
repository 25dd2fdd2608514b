#include "drivers/UsbAdapter.h"

#include <algorithm>
#include <utility>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

constexpr std::size_t fifoBytes = 256;
constexpr std::size_t packetBytes = 64;
constexpr std::uint8_t transmitterEmpty = 0x60;
constexpr auto farFuture = 1h;

// Requests of the standard and of the chip, by their type and number.
constexpr std::uint8_t standardIn = 0x80;
constexpr std::uint8_t interfaceIn = 0x81;
constexpr std::uint8_t chipOut = 0x40;
constexpr std::uint8_t chipIn = 0xC0;
constexpr std::uint8_t classMask = 0x60;
enum StandardRequest : std::uint8_t { getStatus = 0, getDescriptor = 6, getConfiguration = 8, getInterface = 10 };
enum ChipRequest : std::uint8_t {
    reset = 0,
    setModemLines = 1,
    setFlowControl = 2,
    setSpeed = 3,
    setCharacter = 4,
    modemStatus = 5,
    setLatency = 9,
    getLatency = 10,
    readMemory = 0x90
};

constexpr int xonXoffFlow = 4;
constexpr int ctsFlow = 1;

UsbBytes TextDescriptor(std::string_view text) {
    UsbBytes bytes = {static_cast<std::uint8_t>(2 + 2 * text.size()), 3};
    for (const char character : text) {
        bytes.push_back(static_cast<std::uint8_t>(character));
        bytes.push_back(0);
    }
    return bytes;
}

std::optional<UsbBytes> Descriptor(int kind, int number) {
    using Adapter = UsbAdapter;
    constexpr auto low = [](std::uint16_t word) { return static_cast<std::uint8_t>(word & 0xFF); };
    constexpr auto high = [](std::uint16_t word) { return static_cast<std::uint8_t>(word >> 8); };
    if (kind == 1) {
        return UsbBytes{18,
                        1,
                        0x00,
                        0x02,
                        0,
                        0,
                        0,
                        8,
                        low(Adapter::vendor),
                        high(Adapter::vendor),
                        low(Adapter::product),
                        high(Adapter::product),
                        low(Adapter::version),
                        high(Adapter::version),
                        1,
                        2,
                        3,
                        1};
    }
    if (kind == 2 && number == 0) {
        // One configuration with one interface: a bulk endpoint to the computer and one to the line.
        return UsbBytes{9, 2, 32,   0, 1,           1,   0,   0xA0, 45, //
                        9, 4, 0,    0, 2,           255, 255, 255,  2,  //
                        7, 5, 0x81, 2, packetBytes, 0,   0,             //
                        7, 5, 0x02, 2, packetBytes, 0,   0};
    }
    if (kind == 3) {
        switch (number) {
        case 0:
            return UsbBytes{4, 3, 0x09, 0x04};
        case 1:
            return TextDescriptor("Tests");
        case 2:
            return TextDescriptor(Adapter::productName);
        case 3:
            return TextDescriptor("A1");
        default:
            break;
        }
    }
    return std::nullopt;
}

// The divisor of 3,000,000 baud has 14 bits and a fraction, which counts eighths in an order of its own.
int SpeedOf(std::uint16_t value, std::uint16_t index) {
    constexpr int eighths[] = {0, 4, 2, 1, 3, 5, 6, 7};
    const int whole = value & 0x3FFF;
    const int fraction = eighths[(value >> 14) | ((index & 1) << 2)];
    if (fraction == 0 && whole < 2)
        return whole == 0 ? 3000000 : 2000000;
    return 3000000 * 8 / (whole * 8 + fraction);
}

}

void UsbAdapter::OnEvent(std::function<void()> wakeUp) {
    const MutexLock lock(mutex);
    wake = std::move(wakeUp);
}

void UsbAdapter::Arrive(std::string_view bytes, LineError error) {
    const MutexLock lock(mutex);
    for (const char character : bytes) {
        const auto byte = static_cast<std::uint8_t>(character);
        const bool isFlow = (setup.flowControl & xonXoffFlow) != 0 && error == noError;
        if (isFlow && (byte == xonByte || byte == xoffByte))
            isXoffHeld = byte == xoffByte;
        else
            received.push_back({byte, error});
    }
    if (wake)
        wake();
}

std::string UsbAdapter::TakeSent(std::size_t byteCount, Clock::Duration longest) {
    const auto deadline = SteadyClock().Now() + longest;
    const MutexLock lock(mutex);
    while (sent.size() < byteCount && sentMore.WaitUntil(mutex, deadline)) {
    }
    return std::exchange(sent, {});
}

void UsbAdapter::SetModemLine(ModemLine line, bool isOn) {
    const MutexLock lock(mutex);
    modemLines = static_cast<std::uint8_t>(isOn ? modemLines | line : modemLines & ~line);
    hasModemChange = true;
    if (wake)
        wake();
}

UsbAdapter::Setup UsbAdapter::Settings() const {
    const MutexLock lock(mutex);
    return setup;
}

std::optional<UsbBytes> UsbAdapter::Answer(const UsbRequest& request) {
    const MutexLock lock(mutex);
    std::optional<UsbBytes> answer;
    if (request.type == standardIn && request.number == getDescriptor)
        answer = Descriptor(request.value >> 8, request.value & 0xFF);
    else if (request.type == standardIn && request.number == getStatus)
        answer = UsbBytes{0, 0};
    else if (request.type == standardIn && request.number == getConfiguration)
        answer = UsbBytes{1};
    else if (request.type == interfaceIn && request.number == getInterface)
        answer = UsbBytes{0};
    else if ((request.type & classMask) == 0)
        answer = UsbBytes{};
    else if (request.type == chipIn && request.number == modemStatus)
        answer =
            UsbBytes{static_cast<std::uint8_t>(modemLines | 1), toSend.empty() ? transmitterEmpty : std::uint8_t{0}};
    else if (request.type == chipIn && request.number == getLatency)
        answer = UsbBytes{static_cast<std::uint8_t>(setup.latencyMilliseconds)};
    else if (request.type == chipIn && request.number == readMemory)
        answer = UsbBytes{0xFF, 0xFF};
    else if (request.type == chipOut && SetFromRequest(request))
        answer = UsbBytes{};
    if (answer && answer->size() > request.length)
        answer->resize(request.length);
    if (wake)
        wake();
    return answer;
}

bool UsbAdapter::SetFromRequest(const UsbRequest& request) {
    const std::uint16_t value = request.value;
    switch (request.number) {
    case reset:
        // 0 resets the chip; 1 and 2 drop what has arrived and what is to be sent.
        if (value != 2)
            received.clear();
        if (value != 1)
            toSend.clear();
        return true;
    case setModemLines:
        // The high byte says which of the two lines is set.
        if ((value & 0x100) != 0)
            setup.isDtrOn = (value & 1) != 0;
        if ((value & 0x200) != 0)
            setup.isRtsOn = (value & 2) != 0;
        return true;
    case setFlowControl:
        setup.flowControl = request.index >> 8;
        xonByte = static_cast<std::uint8_t>(value & 0xFF);
        xoffByte = static_cast<std::uint8_t>(value >> 8);
        if ((setup.flowControl & xonXoffFlow) == 0)
            isXoffHeld = false;
        return true;
    case setSpeed:
        setup.bitsPerSecond = SpeedOf(value, request.index);
        return true;
    case setCharacter:
        setup.dataBits = value & 0xFF;
        setup.parity = (value >> 8) & 7;
        setup.stopBits = (value >> 11) & 7;
        return true;
    case setLatency:
        setup.latencyMilliseconds = value & 0xFF;
        return true;
    default:
        return false;
    }
}

Clock::Duration UsbAdapter::CharacterTime() const {
    const int bits = 1 + setup.dataBits + (setup.parity != 0 ? 1 : 0) + (setup.stopBits == 2 ? 2 : 1);
    return Clock::Duration(1s) * bits / setup.bitsPerSecond;
}

bool UsbAdapter::IsHeld() const {
    return isXoffHeld || ((setup.flowControl & ctsFlow) != 0 && (modemLines & cts) == 0);
}

bool UsbAdapter::HasRoom() const {
    const MutexLock lock(mutex);
    return toSend.size() + packetBytes <= fifoBytes;
}

void UsbAdapter::TakePacket(const UsbBytes& packet) {
    const MutexLock lock(mutex);
    toSend.insert(toSend.end(), packet.begin(), packet.end());
}

Clock::TimePoint UsbAdapter::PacketDue() const {
    const bool isAtOnce = hasModemChange || received.size() >= packetBytes - 2;
    return isAtOnce ? lastPacket : lastPacket + std::chrono::milliseconds(setup.latencyMilliseconds);
}

std::optional<UsbBytes> UsbAdapter::NextPacket(std::size_t room) {
    const auto now = SteadyClock().Now();
    const MutexLock lock(mutex);
    if (now < PacketDue())
        return std::nullopt;
    // The error in the head is that of each byte of the packet.
    const std::uint8_t error = received.empty() ? std::uint8_t{noError} : received.front().error;
    UsbBytes packet = {static_cast<std::uint8_t>(modemLines | 1),
                       static_cast<std::uint8_t>((toSend.empty() ? transmitterEmpty : 0) | error)};
    while (!received.empty() && packet.size() < std::min(room, packetBytes) && received.front().error == error) {
        packet.push_back(received.front().byte);
        received.pop_front();
        // One byte for each packet with an error: a real chip reports each error once.
        if (error != noError)
            break;
    }
    hasModemChange = false;
    lastPacket = now;
    return packet;
}

Clock::TimePoint UsbAdapter::Advance() {
    const auto now = SteadyClock().Now();
    const MutexLock lock(mutex);
    if (IsHeld() || toSend.empty()) {
        lineFree = std::max(lineFree, now);
        return std::min(PacketDue(), now + farFuture);
    }
    while (!toSend.empty() && lineFree + CharacterTime() <= now) {
        sent.push_back(static_cast<char>(toSend.front()));
        toSend.pop_front();
        lineFree += CharacterTime();
    }
    sentMore.NotifyAll();
    return std::min(PacketDue(), lineFree + CharacterTime());
}

}
