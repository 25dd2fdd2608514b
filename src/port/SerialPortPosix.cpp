#include "port/SerialPortPosix.h"

#include "base/System.h"
#include "port/PortMode.h"
#include "port/PortNames.h"

#include <algorithm>
#include <cerrno>

#include <fcntl.h>
#include <grp.h>
#include <linux/serial.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto modemLineLook = 10ms;
constexpr auto stopLook = 50ms;
constexpr std::size_t dsrFlowAhead = 16;
constexpr tcflag_t handshakeInputFlags = IXON | IXOFF;

PortError Failure(int error, KelText detail = {}) {
    const bool gone = error == EIO || error == ENXIO || error == ENODEV;
    return {true, gone, SystemErrorText(static_cast<unsigned long>(error)) + std::move(detail)};
}

PortError OpenFailure(int error, const std::filesystem::path& path) {
    struct stat file = {};
    if (error != EACCES || ::stat(path.c_str(), &file) != 0)
        return Failure(error);
    const group* owner = ::getgrgid(file.st_gid);
    const std::string name = owner != nullptr ? owner->gr_name : std::to_string(file.st_gid);
    return Failure(error, FromUtf8(". " + path.string() + " belongs to the group " + name +
                                   "; whoever runs the program has to be a member of it."));
}

tcflag_t CharacterFlags(const PortMode& mode) {
    constexpr tcflag_t sizes[] = {CS5, CS6, CS7, CS8};
    tcflag_t flags = sizes[mode.dataBits - 5];
    if (mode.stopBits == PortMode::StopBits::Two)
        flags |= CSTOPB;
    switch (mode.parity) {
    case PortMode::Parity::None:
        return flags;
    case PortMode::Parity::Even:
        return flags | PARENB;
    case PortMode::Parity::Odd:
        return flags | PARENB | PARODD;
    case PortMode::Parity::Mark:
        return flags | PARENB | CMSPAR | PARODD;
    case PortMode::Parity::Space:
        return flags | PARENB | CMSPAR;
    }
    return flags;
}

// A USB adapter holds received bytes back for up to 16 ms otherwise. Many drivers do not know it, and need not.
void AskForLowLatency(int device) {
    serial_struct serial = {};
    if (::ioctl(device, TIOCGSERIAL, &serial) != 0)
        return;
    serial.flags |= ASYNC_LOW_LATENCY;
    (void)::ioctl(device, TIOCSSERIAL, &serial);
}

}

std::unique_ptr<SerialPort> MakeSerialPort(const PortNames& names) {
    return std::make_unique<SerialPortPosix>(names);
}

SerialPortPosix::SerialPortPosix(const PortNames& portNames)
    : names(portNames), wakeEvent(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)) {}

SerialPortPosix::~SerialPortPosix() {
    SerialPortPosix::Close();
    ::close(wakeEvent);
}

PortError SerialPortPosix::Open(const KelText& portName) {
    const auto path = names.DeviceOf(portName);
    if (!path)
        return {true, false, u"The section PORTS of KEL.INI names no device for this port."};
    device = ::open(path->c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (device < 0)
        return OpenFailure(errno, *path);
    PortError error = Prepare();
    if (error) {
        ::close(device);
        device = -1;
    }
    return error;
}

PortError SerialPortPosix::Prepare() {
    if (::ioctl(device, TCGETS2, &state) != 0)
        return Failure(errno);
    // The lock binds programs that know it, root's too; the exclusive mode binds all others, but not root's.
    if (::flock(device, LOCK_EX | LOCK_NB) != 0)
        return Failure(errno == EWOULDBLOCK ? EBUSY : errno);
    (void)::ioctl(device, TIOCEXCL);
    int lines = 0;
    hasModemLines = ::ioctl(device, TIOCMGET, &lines) == 0;
    queue.clear();
    dsrHolds = false;
    activeFlow = {};
    lastKernelCount = 0;
    lastLookAtStop = {};
    AskForLowLatency(device);
    // At once, and not with the mode: a port whose mode is refused stays open, and must not echo or edit meanwhile.
    MakeRaw();
    return ::ioctl(device, TCSETS2, &state) == 0 ? PortError() : Failure(errno);
}

// Bytes as they are, in both directions: no echo, no line editing, no mapping, no signals. A break is no byte.
void SerialPortPosix::MakeRaw() {
    state.c_iflag = (state.c_iflag & handshakeInputFlags) | IGNBRK;
    state.c_oflag = 0;
    state.c_lflag = 0;
    state.c_cflag = (state.c_cflag & ~tcflag_t{HUPCL}) | CREAD | CLOCAL;
    state.c_cc[VSTART] = xon;
    state.c_cc[VSTOP] = xoff;
    // With nothing there a read fails instead of returning 0, which then can only mean a line that was hung up.
    state.c_cc[VMIN] = 1;
    state.c_cc[VTIME] = 0;
}

PortError SerialPortPosix::Close() {
    if (!IsOpen())
        return {};
    // The other side of a pseudo-terminal keeps the device alive, and with it a mode that would shut everyone out.
    (void)::ioctl(device, TIOCNXCL);
    const int result = ::close(device);
    device = -1;
    return result == 0 ? PortError() : Failure(errno);
}

PortError SerialPortPosix::FetchState() {
    return ::ioctl(device, TCGETS2, &state) == 0 ? PortError() : Failure(errno);
}

PortError SerialPortPosix::ApplyMode(const std::string& text) {
    const auto mode = ParsePortMode(text);
    if (!mode || mode->stopBits == PortMode::StopBits::OneAndAHalf)
        return {true, false, u"Unsupported line settings: " + FromUtf8(text)};
    constexpr tcflag_t modeFlags = CSIZE | CSTOPB | PARENB | PARODD | CMSPAR | CBAUD | (CBAUD << IBSHIFT);
    state.c_cflag = (state.c_cflag & ~modeFlags) | CharacterFlags(*mode) | BOTHER | (BOTHER << IBSHIFT);
    state.c_ispeed = state.c_ospeed = static_cast<speed_t>(mode->bitsPerSecond);
    bitsPerSecond = mode->bitsPerSecond;
    return {};
}

PortError SerialPortPosix::CommitState(const std::optional<FlowControl>& flow) {
    MakeRaw();
    if (flow) {
        state.c_iflag = (state.c_iflag & ~handshakeInputFlags) | (flow->software ? handshakeInputFlags : 0);
        state.c_cflag = (state.c_cflag & ~CRTSCTS) | (flow->ctsOutput || flow->rtsHandshake ? CRTSCTS : 0);
        activeFlow = *flow;
    } else {
        activeFlow.software = (state.c_iflag & IXON) != 0;
        activeFlow.ctsOutput = (state.c_cflag & CRTSCTS) != 0;
    }
    if (::ioctl(device, TCSETS2, &state) != 0)
        return Failure(errno);
    int raised = TIOCM_DTR | (activeFlow.rtsHandshake ? 0 : TIOCM_RTS);
    if (hasModemLines)
        (void)::ioctl(device, TIOCMBIS, &raised);
    return {};
}

void SerialPortPosix::Purge() {
    queue.clear();
    (void)::ioctl(device, TCFLSH, TCOFLUSH);
    (void)::ioctl(device, TCFLSH, TCIFLUSH);
}

PortError SerialPortPosix::GetStatus(LineStatus& status) {
    status = {};
    if (activeFlow.ctsOutput || activeFlow.dsrOutput)
        LookAtModemLines(status);
    if (PortError error = PumpQueue())
        return error;
    int waiting = 0;
    std::size_t unsent = 0;
    if (::ioctl(device, FIONREAD, &waiting) != 0 || !CountUnsent(unsent))
        return Failure(errno);
    // A line that can be read without holding bytes has news of another kind, which only a read brings to light.
    status.inputCount = std::max<std::size_t>(static_cast<std::size_t>(std::max(waiting, 0)), isReadable ? 1 : 0);
    isReadable = false;
    status.outputCount = queue.size() + unsent;
    if (activeFlow.software && !status.ctsHold && !status.dsrHold)
        status.xoffHold = IsStopped(unsent);
    return {};
}

bool SerialPortPosix::CountUnsent(std::size_t& count) const {
    int unsent = 0;
    if (::ioctl(device, TIOCOUTQ, &unsent) != 0)
        return false;
    count = static_cast<std::size_t>(std::max(unsent, 0));
    return true;
}

void SerialPortPosix::LookAtModemLines(LineStatus& status) {
    int lines = 0;
    if (!hasModemLines || ::ioctl(device, TIOCMGET, &lines) != 0)
        return;
    status.ctsHold = activeFlow.ctsOutput && (lines & TIOCM_CTS) == 0;
    // The kernel has no DSR flow: it is this queue that holds the bytes back. Bytes that come while DSR is down are
    // read all the same, so that a cable without that wire is not deaf; and DTR stays up, because they are read at
    // once.
    status.dsrHold = activeFlow.dsrOutput && (lines & TIOCM_DSR) == 0;
    dsrHolds = status.dsrHold;
}

bool SerialPortPosix::IsStopped(std::size_t kernelCount) {
    if (kernelCount == 0) {
        lastKernelCount = 0;
        return IsStoppedWhileEmpty();
    }
    const TimePoint now = std::chrono::steady_clock::now();
    if (kernelCount < lastKernelCount || lastKernelCount == 0)
        lastProgress = now;
    lastKernelCount = kernelCount;
    // Longer than the transmitter takes for what it holds itself.
    return now - lastProgress > 100ms + std::chrono::nanoseconds(1s) * 640 / bitsPerSecond;
}

// A stopped pseudo-terminal takes nothing, though it never counts anything. While nothing is to be written only a lamp
// depends on it, and a call for each look would cost more than all the rest of the look.
bool SerialPortPosix::IsStoppedWhileEmpty() {
    const TimePoint now = std::chrono::steady_clock::now();
    if (queue.empty() && !wasStopped && now - lastLookAtStop < stopLook)
        return false;
    lastLookAtStop = now;
    pollfd line = {device, POLLOUT, 0};
    wasStopped = ::poll(&line, 1, 0) == 0;
    return wasStopped;
}

PortError SerialPortPosix::Read(std::span<std::uint8_t> room, std::size_t& byteCount) {
    byteCount = 0;
    const ssize_t count = ::read(device, room.data(), room.size());
    if (count > 0) {
        byteCount = static_cast<std::size_t>(count);
        return {};
    }
    if (count == 0)
        return Failure(EIO);
    return errno == EAGAIN || errno == EINTR ? PortError() : Failure(errno);
}

PortError SerialPortPosix::Write(std::span<const std::uint8_t> bytes, std::size_t& byteCount) {
    byteCount = bytes.size();
    queue.insert(queue.end(), bytes.begin(), bytes.end());
    if (activeFlow.dsrOutput) {
        LineStatus present;
        LookAtModemLines(present);
    }
    return PumpQueue();
}

// What the kernel may be given. What it has it sends, whatever DSR says; so with DSR flow it gets little at a time.
std::size_t SerialPortPosix::KernelRoom() const {
    if (dsrHolds)
        return 0;
    std::size_t unsent = 0;
    if (!activeFlow.dsrOutput || !CountUnsent(unsent))
        return queue.size();
    return std::min(queue.size(), dsrFlowAhead - std::min(dsrFlowAhead, unsent));
}

PortError SerialPortPosix::PumpQueue() {
    while (const std::size_t room = queue.empty() ? 0 : KernelRoom()) {
        const ssize_t count = ::write(device, queue.data(), room);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return errno == EAGAIN ? PortError() : Failure(errno);
        if (count == 0)
            return {};
        queue.erase(queue.begin(), queue.begin() + count);
    }
    return {};
}

void SerialPortPosix::Wait(std::chrono::nanoseconds longest, Awaited awaited) {
    const bool isPortAwaited = IsOpen() && awaited == Awaited::BytesToo;
    const bool hasLineFlow = activeFlow.ctsOutput || activeFlow.dsrOutput;
    if (isPortAwaited && hasModemLines && hasLineFlow)
        longest = std::min<std::chrono::nanoseconds>(longest, modemLineLook);
    // With DSR flow the kernel always has room, and the queue goes on at the next look.
    const bool wantsOutput = !queue.empty() && !activeFlow.dsrOutput;
    pollfd events[2] = {{wakeEvent, POLLIN, 0},
                        {device, static_cast<short>(wantsOutput ? POLLIN | POLLOUT : POLLIN), 0}};
    const timespec timeout = {static_cast<time_t>(longest / 1s), static_cast<long>((longest % 1s).count())};
    const int ready = ::ppoll(events, isPortAwaited ? 2 : 1, &timeout, nullptr);
    isReadable = ready > 0 && isPortAwaited && (events[1].revents & ~POLLOUT) != 0;
    if (ready > 0 && events[0].revents != 0) {
        eventfd_t count = 0;
        (void)::eventfd_read(wakeEvent, &count);
    }
}

void SerialPortPosix::Wake() {
    (void)::eventfd_write(wakeEvent, 1);
}

}
