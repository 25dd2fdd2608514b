#include "controller/DescriptorLinePosix.h"

#include "base/System.h"

#include <algorithm>
#include <cerrno>
#include <thread>

#include <poll.h>
#include <unistd.h>

namespace tarvin::controller {

namespace {

timespec TimeLeft(Clock::TimePoint deadline) {
    const auto left = std::max(deadline - SteadyClock().Now(), Clock::Duration::zero());
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(left);
    const auto rest = std::chrono::duration_cast<std::chrono::nanoseconds>(left - seconds);
    return {static_cast<time_t>(seconds.count()), static_cast<long>(rest.count())};
}

bool HasPassed(Clock::TimePoint deadline) {
    return SteadyClock().Now() >= deadline;
}

}

DescriptorLine::~DescriptorLine() {
    ::close(descriptor);
}

ControllerLine::Status DescriptorLine::Fail(int systemError) {
    // A pseudo-terminal answers EIO while no program has its other end open.
    if (systemError == EIO)
        return Status::HungUp;
    lastError = ToUtf8(SystemErrorText(static_cast<unsigned long>(systemError)));
    return Status::Failed;
}

ControllerLine::Status DescriptorLine::AfterError(int systemError, Clock::TimePoint deadline) {
    if (systemError == EAGAIN || systemError == EINTR)
        return Status::Done;
    const Status status = Fail(systemError);
    return status == Status::HungUp && IsOpenedAgain(deadline) ? Status::Done : status;
}

ControllerLine::Status DescriptorLine::WaitFor(short event, Clock::TimePoint deadline) {
    for (;;) {
        pollfd entry = {descriptor, event, 0};
        const timespec left = TimeLeft(deadline);
        const int ready = ::ppoll(&entry, 1, &left, nullptr);
        if (ready < 0 && errno != EINTR)
            return Fail(errno);
        if (ready > 0 && (entry.revents & event) != 0)
            return Status::Done;
        // Ready without the event: the line has hung up.
        if (ready > 0 && !IsOpenedAgain(deadline))
            return Status::HungUp;
        if (ready == 0 && HasPassed(deadline))
            return Status::TimedOut;
    }
}

ControllerLine::Status DescriptorLine::Read(char* bytes, std::size_t capacity, Clock::TimePoint deadline,
                                            std::size_t& byteCount) {
    byteCount = 0;
    for (;;) {
        if (const Status status = WaitFor(POLLIN, deadline); status != Status::Done)
            return status;
        const ssize_t count = ::read(descriptor, bytes, capacity);
        if (count > 0) {
            byteCount = static_cast<std::size_t>(count);
            return Status::Done;
        }
        if (const Status status = count == 0 ? Status::HungUp : AfterError(errno, deadline); status != Status::Done)
            return status;
    }
}

ControllerLine::Status DescriptorLine::Write(std::string_view bytes, Clock::TimePoint deadline) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(descriptor, bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(count));
        } else if (errno == EAGAIN && HasPassed(deadline)) {
            return Status::TimedOut;
        } else if (errno == EAGAIN) {
            if (const Status status = WaitFor(POLLOUT, deadline); status != Status::Done)
                return status;
        } else if (const Status status = AfterError(errno, deadline); status != Status::Done) {
            return status;
        }
    }
    return Status::Done;
}

ControllerLine::Status DescriptorLine::WaitForPeer(Clock::TimePoint deadline) {
    for (;;) {
        pollfd entry = {descriptor, 0, 0};
        const timespec noWait = {};
        if (::ppoll(&entry, 1, &noWait, nullptr) < 0 && errno != EINTR)
            return Fail(errno);
        if ((entry.revents & (POLLERR | POLLNVAL)) != 0)
            return Fail(ENODEV);
        if ((entry.revents & POLLHUP) == 0)
            return Status::Done;
        if (HasPassed(deadline))
            return Status::TimedOut;
        // The system does not announce that a program opens the other end, so look again.
        Pause(std::chrono::milliseconds(2));
    }
}

void DescriptorLine::Pause(Clock::Duration duration) {
    std::this_thread::sleep_for(duration);
}

}
