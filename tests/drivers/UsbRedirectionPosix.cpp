#include "drivers/UsbRedirectionPosix.h"

#include "harness/SystemCallPosix.h"

#include <algorithm>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

// Kinds of messages.
enum Kind : std::uint32_t {
    hello = 0,
    deviceConnect = 1,
    deviceDisconnect = 2,
    interfaceInfo = 4,
    endpointInfo = 5,
    setConfiguration = 6,
    getConfiguration = 7,
    configurationStatus = 8,
    setSetting = 9,
    getSetting = 10,
    settingStatus = 11,
    cancelPacket = 21,
    controlPacket = 100,
    bulkPacket = 101
};

// Abilities that the greeting names, by their bits. QEMU's xHCI refuses a device without the last three.
constexpr std::uint32_t abilities = 1 << 1    // the version of the device
                                    | 1 << 4  // the sizes of the packets of each endpoint
                                    | 1 << 5  // numbers of messages of 64 bits
                                    | 1 << 6; // lengths of bulk packets of 32 bits

enum Status : std::uint8_t { success = 0, cancelled = 1, stalled = 4 };

constexpr std::size_t endpointCount = 32;
constexpr std::size_t firstInEndpoint = 16; // in the tables of endpoints
constexpr std::uint8_t directionIn = 0x80;

// Numbers with the low byte first.
template <typename Number>
void Put(UsbBytes& bytes, Number number) {
    for (std::size_t place = 0; place < sizeof number; ++place)
        bytes.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(number) >> (8 * place)));
}

std::uint64_t NumberAt(const UsbBytes& bytes, std::size_t place, std::size_t size) {
    std::uint64_t number = 0;
    for (std::size_t index = size; index > 0; --index)
        number = number << 8 | bytes.at(place + index - 1);
    return number;
}

}

UsbRedirection::UsbRedirection(UsbAdapter& adapter, const std::filesystem::path& connectionPath)
    : adapter(adapter),
      connection(::open(connectionPath.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC)),
      wakeEvent(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {
    RequireCall(connection >= 0, connectionPath.native());
    adapter.OnEvent([this] { Wake(); });
    Start();
}

UsbRedirection::~UsbRedirection() {
    adapter.OnEvent({});
    Stop();
    Wake();
    Wait();
    ::close(connection);
    ::close(wakeEvent);
}

void UsbRedirection::Wake() {
    (void)::eventfd_write(wakeEvent, 1);
}

void UsbRedirection::SetPlugged(bool isWanted) {
    isPlugWanted = isWanted;
    Wake();
}

int UsbRedirection::Body() {
    Greet();
    while (!StopRequested()) {
        FollowPlug();
        const auto due = adapter.Advance();
        ServeBulk();
        // A packet that is due while none is asked for waits for the computer, not for the time.
        const std::chrono::nanoseconds shortest = toComputer.empty() ? 1ms : 0ms;
        const auto longest = std::clamp<std::chrono::nanoseconds>(due - SteadyClock().Now(), shortest, 100ms);
        const timespec timeout = {0, static_cast<long>(longest.count())};
        pollfd events[2] = {{connection, POLLIN, 0}, {wakeEvent, POLLIN, 0}};
        (void)::ppoll(events, 2, &timeout, nullptr);
        eventfd_t count = 0;
        (void)::eventfd_read(wakeEvent, &count);
        std::uint8_t room[4096];
        const ssize_t byteCount = ::read(connection, room, sizeof room);
        if (byteCount > 0)
            incoming.insert(incoming.end(), room, room + byteCount);
        while (TakeMessage()) {
        }
    }
    return 0;
}

void UsbRedirection::FollowPlug() {
    const bool isWanted = isPlugWanted;
    if (isWanted == isPlugged || !hasGreeting)
        return;
    isPlugged = isWanted;
    if (!isPlugged) {
        toComputer.clear();
        toLine.clear();
        Send(deviceDisconnect, 0, {});
        return;
    }
    DescribeInterface();
    constexpr std::uint8_t fullSpeed = 1;
    UsbBytes device = {fullSpeed, 0, 0, 0};
    Put(device, UsbAdapter::vendor);
    Put(device, UsbAdapter::product);
    Put(device, UsbAdapter::version);
    Send(deviceConnect, 0, device);
}

void UsbRedirection::ServeBulk() {
    while (!toLine.empty() && adapter.HasRoom()) {
        adapter.TakePacket(toLine.front().bytes);
        AnswerBulk(toLine.front(), success, {});
        toLine.pop_front();
    }
    while (!toComputer.empty()) {
        const auto packet = adapter.NextPacket(toComputer.front().room);
        if (!packet)
            return;
        AnswerBulk(toComputer.front(), success, *packet);
        toComputer.pop_front();
    }
}

// The number of a greeting has 32 bits, that of every other message 64.
void UsbRedirection::Send(std::uint32_t kind, std::uint64_t id, const UsbBytes& body) {
    UsbBytes message;
    Put(message, kind);
    Put(message, static_cast<std::uint32_t>(body.size()));
    if (kind == hello)
        Put(message, static_cast<std::uint32_t>(id));
    else
        Put(message, id);
    message.insert(message.end(), body.begin(), body.end());
    for (std::size_t done = 0; done < message.size();) {
        const ssize_t count = ::write(connection, message.data() + done, message.size() - done);
        if (count > 0)
            done += static_cast<std::size_t>(count);
        else
            ::poll(nullptr, 0, 1);
    }
}

void UsbRedirection::Greet() {
    constexpr std::size_t nameBytes = 64;
    UsbBytes body(nameBytes);
    Put(body, abilities);
    Send(hello, 0, body);
}

void UsbRedirection::DescribeInterface() {
    UsbBytes interfaces;
    Put(interfaces, std::uint32_t{1});
    interfaces.resize(4 + endpointCount);
    for (int table = 0; table < 3; ++table) {
        // Class, subclass and protocol: the vendor's own.
        interfaces.push_back(0xFF);
        interfaces.resize(interfaces.size() + endpointCount - 1);
    }
    Send(interfaceInfo, 0, interfaces);

    constexpr std::uint8_t control = 0;
    constexpr std::uint8_t bulk = 2;
    constexpr std::uint8_t absent = 255;
    UsbBytes kinds(endpointCount, absent);
    std::vector<std::uint16_t> sizes(endpointCount);
    const auto describe = [&](std::size_t endpoint, std::uint8_t kind, std::uint16_t size) {
        kinds[endpoint] = kind;
        sizes[endpoint] = size;
    };
    describe(0, control, 8);
    describe(firstInEndpoint, control, 8);
    describe(2, bulk, 64);
    describe(firstInEndpoint + 1, bulk, 64);
    UsbBytes body = kinds;
    // Intervals and interfaces are 0.
    body.resize(3 * endpointCount);
    for (const std::uint16_t size : sizes)
        Put(body, size);
    Send(endpointInfo, 0, body);
}

bool UsbRedirection::TakeMessage() {
    const std::size_t headBytes = hasGreeting ? 16 : 12;
    if (incoming.size() < headBytes)
        return false;
    const std::size_t bodyBytes = NumberAt(incoming, 4, 4);
    if (incoming.size() < headBytes + bodyBytes)
        return false;
    const auto kind = static_cast<std::uint32_t>(NumberAt(incoming, 0, 4));
    const std::uint64_t id = NumberAt(incoming, 8, headBytes - 8);
    const auto bodyStart = incoming.begin() + static_cast<std::ptrdiff_t>(headBytes);
    const auto bodyEnd = bodyStart + static_cast<std::ptrdiff_t>(bodyBytes);
    const UsbBytes body(bodyStart, bodyEnd);
    incoming.erase(incoming.begin(), bodyEnd);
    HandleMessage(kind, id, body);
    return true;
}

void UsbRedirection::HandleMessage(std::uint32_t kind, std::uint64_t id, const UsbBytes& body) {
    switch (kind) {
    case hello:
        hasGreeting = true;
        break;
    case setConfiguration:
        DescribeInterface();
        Send(configurationStatus, id, {success, body.at(0)});
        break;
    case getConfiguration:
        Send(configurationStatus, id, {success, 1});
        break;
    case setSetting:
    case getSetting:
        Send(settingStatus, id, {success, body.at(0), 0});
        break;
    case cancelPacket:
        CancelBulk(id);
        break;
    case controlPacket:
        HandleRequest(id, body);
        break;
    case bulkPacket: {
        constexpr std::size_t headBytes = 10;
        const auto endpoint = body.at(0);
        Bulk bulk = {id, endpoint, NumberAt(body, 2, 2), {}};
        if ((endpoint & directionIn) != 0) {
            toComputer.push_back(std::move(bulk));
        } else {
            bulk.bytes.assign(body.begin() + headBytes, body.end());
            toLine.push_back(std::move(bulk));
        }
        break;
    }
    default:
        break;
    }
}

void UsbRedirection::HandleRequest(std::uint64_t id, const UsbBytes& body) {
    UsbRequest request;
    request.number = body.at(1);
    request.type = body.at(2);
    request.value = static_cast<std::uint16_t>(NumberAt(body, 4, 2));
    request.index = static_cast<std::uint16_t>(NumberAt(body, 6, 2));
    request.length = static_cast<std::uint16_t>(NumberAt(body, 8, 2));
    const bool asksForBytes = (request.type & directionIn) != 0;
    const auto answer = adapter.Answer(request);
    UsbBytes reply(body.begin(), body.begin() + 8);
    reply[3] = answer ? success : stalled;
    const UsbBytes bytes = asksForBytes ? answer.value_or(UsbBytes()) : UsbBytes();
    Put(reply, asksForBytes ? static_cast<std::uint16_t>(bytes.size()) : request.length);
    reply.insert(reply.end(), bytes.begin(), bytes.end());
    Send(controlPacket, id, reply);
}

// A cancelled packet is answered as such: QEMU uses its number again.
void UsbRedirection::CancelBulk(std::uint64_t id) {
    for (std::deque<Bulk>* queue : {&toComputer, &toLine}) {
        const auto found = std::ranges::find(*queue, id, &Bulk::id);
        if (found == queue->end())
            continue;
        AnswerBulk(*found, cancelled, {});
        queue->erase(found);
    }
}

void UsbRedirection::AnswerBulk(const Bulk& bulk, std::uint8_t status, const UsbBytes& bytes) {
    UsbBytes body = {bulk.endpoint, status};
    // Of a packet to the line the answer gives the size alone.
    const bool isForComputer = (bulk.endpoint & directionIn) != 0;
    Put(body, static_cast<std::uint16_t>(isForComputer || status != success ? bytes.size() : bulk.bytes.size()));
    Put(body, std::uint32_t{0});
    Put(body, std::uint16_t{0});
    body.insert(body.end(), bytes.begin(), bytes.end());
    Send(bulkPacket, bulk.id, body);
}

}
