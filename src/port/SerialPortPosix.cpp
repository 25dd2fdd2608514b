#include "port/SerialPortPosix.h"

#include "base/Messages.h"
#include "port/DeviceFailurePosix.h"
#include "port/PortMode.h"
#include "port/PortNames.h"
#include "port/TerminalModePosix.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto modemLineLook = 10ms;
constexpr std::size_t longestReceived = 64 * 1024;
constexpr tcflag_t handshakeInputFlags = IXON | IXOFF;

Result<> Check(int result) {
    return result == 0 ? Result<>() : DeviceFailure(errno);
}

}

std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names) {
    return std::make_unique<SerialPortPosix>(names);
}

SerialPortPosix::SerialPortPosix(const PortNames& names)
    : names(names), wakeEvent(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

SerialPortPosix::~SerialPortPosix() {
    (void)SerialPortPosix::Close();
    ::close(wakeEvent);
}

Result<> SerialPortPosix::Open(const KelText& portName) {
    assert(!IsOpen());
    const auto path = names.DeviceOf(portName);
    if (!path)
        return Error{text::portReason::noDevice};
    // O_NONBLOCK: a device that waits for its carrier must not hold up the program.
    device = ::open(path->c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (device < 0)
        return OpenFailure(errno, *path);
    Result<> result = Prepare();
    if (!result) {
        ::close(device);
        device = -1;
    }
    return result;
}

Result<> SerialPortPosix::Prepare() {
    // First of all: a file or a pipe fails here, before anything else touches it.
    if (::ioctl(device, TCGETS2, &state) != 0)
        return DeviceFailure(errno);
    // The lock stops programs that know it, those of root too. The exclusive mode stops all others, but not root.
    if (::flock(device, LOCK_EX | LOCK_NB) != 0)
        return DeviceFailure(errno == EWOULDBLOCK ? EBUSY : errno);
    (void)::ioctl(device, TIOCEXCL);
    // A pseudo-terminal and some adapters have no modem lines: flow control must not wait for them.
    int lines = 0;
    hasModemLines = ::ioctl(device, TIOCMGET, &lines) == 0;
    errorCounters.Start(device);
    queue.clear();
    received.clear();
    modemLineHolds = false;
    untoldErrors = {};
    toldCount = 0;
    isPaced = false;
    activeFlow = {};
    driver = DriverOf(device);
    isBuffered = driver != LineDriver::PseudoTerminal;
    advice = SpeedUpReceiving(device);
    // Here already, and again with the mode: a port whose mode is refused stays open, and must not echo or edit.
    MakeRaw();
    return Check(::ioctl(device, TCSETS2, &state));
}

// Passes every byte unchanged in both directions: no echo, no line editing, no mapping, no signals. A break gives no
// byte, apart from FTDI's driver, which gives a 0.
void SerialPortPosix::MakeRaw() {
    state.c_iflag = (state.c_iflag & handshakeInputFlags) | IGNBRK;
    state.c_oflag = 0;
    state.c_lflag = 0;
    // Without HUPCL the controller sees no change of DTR when the program ends.
    state.c_cflag = (state.c_cflag & ~tcflag_t{HUPCL}) | CREAD | CLOCAL;
    state.c_cc[VSTART] = xon;
    state.c_cc[VSTOP] = xoff;
    // With 1 an empty read fails with EAGAIN. A read that returns 0 then always means a line that was hung up.
    state.c_cc[VMIN] = 1;
    state.c_cc[VTIME] = 0;
}

Result<> SerialPortPosix::Close() {
    if (!IsOpen())
        return {};
    if (isPaced)
        EndPace();
    // The far end of a pseudo-terminal keeps the device alive, and the exclusive mode with it: nothing could open the
    // device again.
    (void)::ioctl(device, TIOCNXCL);
    const int result = ::close(device);
    device = -1;
    return Check(result);
}

// Leaves the handshake as the settings had it, but for a line that CTS holds: there the kernel would wait up to 30 s
// for the adapter to send its last bytes. Without the handshake they leave at once.
void SerialPortPosix::EndPace() {
    state.c_iflag |= activeFlow.software ? IXON : 0;
    if (LookAtModemLines().cts)
        state.c_cflag &= ~CRTSCTS;
    (void)::ioctl(device, TCSETS2, &state);
}

Result<> SerialPortPosix::SetQueueSizes(std::size_t /*inputBytes*/, std::size_t /*outputBytes*/) {
    assert(IsOpen());
    return {};
}

Result<> SerialPortPosix::FetchState() {
    assert(IsOpen());
    return Check(::ioctl(device, TCGETS2, &state));
}

Result<> SerialPortPosix::ApplyMode(const std::string& text) {
    assert(IsOpen());
    const auto mode = ParsePortMode(text);
    if (!mode || mode->stopBits == PortMode::StopBits::OneAndAHalf)
        return Error{Filled(tarvin::text::portReason::unsupportedMode, {FromUtf8(text)})};
    PutMode(*mode, state);
    return {};
}

Result<> SerialPortPosix::CommitState(const std::optional<FlowControl>& flow) {
    assert(IsOpen());
    MakeRaw();
    if (flow) {
        state.c_iflag = (state.c_iflag & ~handshakeInputFlags) | (flow->software ? handshakeInputFlags : 0);
        // The kernel has one flag for both directions of the RTS/CTS handshake.
        state.c_cflag = (state.c_cflag & ~CRTSCTS) | (flow->ctsOutput || flow->rtsHandshake ? CRTSCTS : 0);
        activeFlow = *flow;
    } else {
        activeFlow.software = (state.c_iflag & IXON) != 0;
        activeFlow.ctsOutput = (state.c_cflag & CRTSCTS) != 0;
    }
    // A chip that holds the line by itself, as FTDI's do, hides the hold and the bytes that it holds, and nothing takes
    // these bytes back. So its output is paced as well.
    isPaced = driver == LineDriver::Other && (activeFlow.software || activeFlow.ctsOutput || activeFlow.dsrOutput);
    if (isPaced)
        state.c_iflag &= ~static_cast<tcflag_t>(IXON);
    if (const Result<> committed = CommitMode(); !committed)
        return committed;
    pace.Start(CharacterTime(state));
    stoppedOutput.Start(CharacterTime(state));
    received.clear();
    toldCount = 0;
    // With the RTS handshake the kernel drives RTS itself.
    int raised = TIOCM_DTR | (activeFlow.rtsHandshake ? 0 : TIOCM_RTS);
    if (hasModemLines)
        (void)::ioctl(device, TIOCMBIS, &raised);
    return {};
}

// A driver takes each mode with success, and runs in the nearest one that it has.
Result<> SerialPortPosix::CommitMode() {
    termios2 before = {};
    if (::ioctl(device, TCGETS2, &before) != 0 || ::ioctl(device, TCSETS2, &state) != 0)
        return DeviceFailure(errno);
    if (driver == LineDriver::PseudoTerminal)
        return {};
    termios2 granted = {};
    if (::ioctl(device, TCGETS2, &granted) != 0)
        return DeviceFailure(errno);
    if ((granted.c_cflag & CSIZE) == CS5 && SendsFiveBitsAsEight(device))
        granted.c_cflag |= CS8;
    Result<> result = CheckGrantedMode(state, granted);
    if (!result)
        (void)::ioctl(device, TCSETS2, &before);
    return result;
}

Result<> SerialPortPosix::SetTimeouts(std::chrono::milliseconds /*writeTotal*/) {
    assert(IsOpen());
    return {};
}

void SerialPortPosix::Purge() {
    assert(IsOpen());
    // An XOFF among the bytes that are dropped counts all the same.
    (void)FetchReceived();
    queue.clear();
    received.clear();
    untoldErrors = {};
    toldCount = 0;
    (void)::ioctl(device, TCFLSH, TCOFLUSH);
    (void)::ioctl(device, TCFLSH, TCIFLUSH);
}

Result<LineStatus> SerialPortPosix::GetStatus() {
    assert(IsOpen());
    LineStatus status;
    // Before the queue: the modem lines and an XOFF decide whether it may go on.
    if (activeFlow.ctsOutput || activeFlow.dsrOutput)
        status.holds = LookAtModemLines();
    if (const Result<> fetched = FetchReceived(); !fetched)
        return fetched.Reason();
    if (const Result<> pumped = PumpQueue(); !pumped)
        return pumped.Reason();
    int waiting = 0;
    std::size_t unsent = 0;
    if ((!isBuffered && ::ioctl(device, FIONREAD, &waiting) != 0) || !CountUnsent(unsent))
        return DeviceFailure(errno);
    // A device that is readable and holds no bytes was hung up. Only a read tells, so one byte is reported.
    status.inputCount = isBuffered ? received.size() : static_cast<std::size_t>(std::max(waiting, isReadable ? 1 : 0));
    status.errors = std::exchange(untoldErrors, {});
    toldCount = received.size();
    isReadable = false;
    if (isPaced) {
        // Some drivers count whole packets. They never have more than what was handed over.
        unsent = std::max(pace.UnsentCount(), std::min(unsent, PacedOutput::ahead));
        status.holds.xoff = pace.IsHeld();
    } else if (activeFlow.software && !status.holds.cts && !status.holds.dsr) {
        status.holds.xoff = stoppedOutput.Look(device, unsent, !queue.empty());
    }
    status.outputCount = queue.size() + unsent;
    return status;
}

// Takes received bytes from the kernel, so that an XOFF of a paced line has its effect before the caller reads, and an
// error is known before its byte is read.
Result<> SerialPortPosix::FetchReceived() {
    std::uint8_t room[4096];
    while (isBuffered && received.size() < longestReceived) {
        const auto byteCount = ReadDevice(room);
        if (!byteCount)
            return byteCount.Reason();
        if (*byteCount == 0)
            break;
        std::vector<std::uint8_t> fresh(room, room + *byteCount);
        if (isPaced)
            pace.TakeFlowBytes(fresh);
        received.insert(received.end(), fresh.begin(), fresh.end());
        // After the bytes: a driver counts an error before it hands over the byte.
        const LineErrors errors = errorCounters.TakeNew(device);
        untoldErrors.parity += errors.parity;
        untoldErrors.framing += errors.framing;
        untoldErrors.overrun += errors.overrun;
        untoldErrors.breaks += errors.breaks;
    }
    return {};
}

bool SerialPortPosix::CountUnsent(std::size_t& count) const {
    int unsent = 0;
    if (::ioctl(device, TIOCOUTQ, &unsent) != 0)
        return false;
    count = static_cast<std::size_t>(std::max(unsent, 0));
    return true;
}

LineHolds SerialPortPosix::LookAtModemLines() {
    LineHolds holds;
    int lines = 0;
    if (!hasModemLines || ::ioctl(device, TIOCMGET, &lines) != 0)
        return holds;
    // The kernel has no DSR flow: the queue of this class holds the bytes back. Bytes that arrive while DSR is off are
    // read all the same: a cable without that wire still works. DTR stays on, because received bytes never pile up.
    holds.cts = activeFlow.ctsOutput && (lines & TIOCM_CTS) == 0;
    holds.dsr = activeFlow.dsrOutput && (lines & TIOCM_DSR) == 0;
    // The serial core heeds CTS by itself. What an adapter was given before its CTS went off cannot be counted.
    modemLineHolds = holds.dsr || (holds.cts && isPaced);
    return holds;
}

Result<std::size_t> SerialPortPosix::Read(std::span<std::uint8_t> room) {
    assert(IsOpen() && !room.empty());
    if (!isBuffered)
        return ReadDevice(room);
    if (const Result<> fetched = FetchReceived(); !fetched)
        return fetched.Reason();
    // Bytes that came with an error wait for the status that tells it.
    const std::size_t readable = untoldErrors == LineErrors() ? received.size() : toldCount;
    const std::size_t byteCount = std::min(room.size(), readable);
    toldCount -= std::min(toldCount, byteCount);
    std::copy_n(received.begin(), byteCount, room.begin());
    received.erase(received.begin(), received.begin() + static_cast<std::ptrdiff_t>(byteCount));
    return byteCount;
}

Result<std::size_t> SerialPortPosix::ReadDevice(std::span<std::uint8_t> room) {
    const ssize_t count = ::read(device, room.data(), room.size());
    if (count > 0)
        return static_cast<std::size_t>(count);
    if (count == 0)
        return DeviceFailure(EIO);
    if (errno == EAGAIN || errno == EINTR)
        return std::size_t{0};
    return DeviceFailure(errno);
}

Result<> SerialPortPosix::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    assert(IsOpen());
    byteCount = bytes.size();
    queue.insert(queue.end(), bytes.begin(), bytes.end());
    if (activeFlow.dsrOutput || (isPaced && activeFlow.ctsOutput))
        (void)LookAtModemLines();
    // An XOFF may have arrived since the last look.
    if (const Result<> fetched = FetchReceived(); !fetched)
        return fetched;
    return PumpQueue();
}

// How many bytes the kernel may get now. The kernel sends all that it has, whatever DSR says and, on a paced line,
// whatever has arrived. It therefore gets a few bytes at a time.
std::size_t SerialPortPosix::KernelRoom() const {
    if (modemLineHolds)
        return 0;
    std::size_t unsent = 0;
    if ((!isPaced && !activeFlow.dsrOutput) || !CountUnsent(unsent))
        return queue.size();
    const std::size_t room = PacedOutput::ahead - std::min(PacedOutput::ahead, unsent);
    return std::min({queue.size(), room, isPaced ? pace.Room() : room});
}

Result<> SerialPortPosix::PumpQueue() {
    while (const std::size_t room = queue.empty() ? 0 : KernelRoom()) {
        const ssize_t count = ::write(device, queue.data(), room);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno == EAGAIN ? Result<>() : DeviceFailure(errno);
        if (count == 0)
            return {};
        pace.HandedOver(static_cast<std::size_t>(count));
        queue.erase(queue.begin(), queue.begin() + count);
    }
    return {};
}

Result<> SerialPortPosix::ReleaseXoff() {
    assert(IsOpen());
    queue.clear();
    (void)::ioctl(device, TCFLSH, TCOFLUSH);
    pace.Release();
    if (isPaced)
        return {};
    // A terminal that an XOFF has stopped does not count as stopped by TCOOFF, and TCOON alone starts only such a one.
    (void)::ioctl(device, TCXONC, TCOOFF);
    (void)::ioctl(device, TCXONC, TCOON);
    // A driver may keep a stop of its own, which ends when its flow control is set anew.
    termios2 without = state;
    without.c_iflag &= ~static_cast<tcflag_t>(IXON | IXOFF);
    if (::ioctl(device, TCSETS2, &without) != 0 || ::ioctl(device, TCSETS2, &state) != 0)
        return DeviceFailure(errno);
    stoppedOutput.Start(CharacterTime(state));
    return {};
}

// poll reports neither modem lines nor the time at which a paced line may get more.
std::chrono::nanoseconds SerialPortPosix::LongestWait(std::chrono::nanoseconds longest) const {
    if (hasModemLines && (activeFlow.ctsOutput || activeFlow.dsrOutput))
        longest = std::min<std::chrono::nanoseconds>(longest, modemLineLook);
    if (isPaced && !queue.empty() && !pace.IsHeld() && !modemLineHolds)
        longest = std::min<std::chrono::nanoseconds>(longest, pace.NextWrite() - clock.Now());
    return received.empty() ? std::max(longest, 0ns) : 0ns;
}

void SerialPortPosix::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    assert(longest >= 0ns);
    const bool isPortAwaited = IsOpen() && awaited == Awaited::BytesToo;
    if (isPortAwaited)
        longest = LongestWait(longest);
    // With DSR flow and on a paced line the kernel always has room and POLLOUT would end the wait at once; the queue
    // goes on at the next look.
    const bool wantsOutput = !queue.empty() && !activeFlow.dsrOutput && !isPaced;
    pollfd events[2] = {{wakeEvent, POLLIN, 0},
                        {device, static_cast<short>(wantsOutput ? POLLIN | POLLOUT : POLLIN), 0}};
    const timespec timeout = {static_cast<time_t>(longest / 1s), static_cast<long>((longest % 1s).count())};
    const int ready = ::ppoll(events, isPortAwaited ? 2 : 1, &timeout, nullptr);
    // Errors and a hang-up count as readable: the next read finds out.
    isReadable = ready > 0 && isPortAwaited && (events[1].revents & ~POLLOUT) != 0;
    if (ready > 0 && events[0].revents != 0) {
        eventfd_t count = 0;
        (void)::eventfd_read(wakeEvent, &count);
    }
}

std::optional<KelText> SerialPortPosix::TakeAdvice() {
    const auto taken = std::exchange(advice, std::nullopt);
    return taken && givenAdvice.insert(*taken).second ? taken : std::nullopt;
}

void SerialPortPosix::Wake() {
    (void)::eventfd_write(wakeEvent, 1);
}

}
