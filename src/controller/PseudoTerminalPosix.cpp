// Makes a pseudo-terminal and the link to its other end. Removes the link however the process ends.

#include "base/DescriptorPosix.h"
#include "base/System.h"
#include "controller/DescriptorLinePosix.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iterator>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::controller {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
constexpr std::size_t endingSignalCount = std::size(endingSignals);
struct sigaction actionsBefore[endingSignalCount];
// The path of the link, in fixed memory because a signal handler must not allocate. Empty while there is no link.
char linkToRemove[4096];

void RemoveLinkAndEnd(int signalNumber) {
    if (linkToRemove[0] != '\0')
        ::unlink(linkToRemove);
    // SA_RESETHAND has removed this handler, so the signal now ends the process as its sender expects.
    ::raise(signalNumber);
}

void CatchEndingSignals() {
    struct sigaction action = {};
    action.sa_handler = &RemoveLinkAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t index = 0; index < endingSignalCount; ++index) {
        ::sigaction(endingSignals[index], nullptr, &actionsBefore[index]);
        // A signal that is ignored, for example after "nohup", stays ignored.
        if (actionsBefore[index].sa_handler != SIG_IGN)
            ::sigaction(endingSignals[index], &action, nullptr);
    }
}

void ReleaseEndingSignals() {
    for (std::size_t index = 0; index < endingSignalCount; ++index)
        ::sigaction(endingSignals[index], &actionsBefore[index], nullptr);
    linkToRemove[0] = '\0';
}

// Call at once after the system call that failed: its error number is still in errno then.
Error Failure(const std::string& what) {
    return {FromUtf8(what + ": ") + SystemErrorText(static_cast<unsigned long>(errno))};
}

std::string TargetOf(const std::filesystem::path& link) {
    std::error_code ignored;
    return std::filesystem::read_symlink(link, ignored).native();
}

// Opens the other end once and closes it again. The line is then raw, and shows as hung up until a program opens it.
// The settings stay as long as the controller's end is open.
bool MakeRaw(const char* otherEnd) {
    const int descriptor = ::open(otherEnd, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    termios settings = {};
    bool isSet = ::tcgetattr(descriptor, &settings) == 0;
    ::cfmakeraw(&settings);
    isSet = isSet && ::tcsetattr(descriptor, TCSANOW, &settings) == 0;
    ::close(descriptor);
    return isSet;
}

// Removes a link that leads nowhere. Fails if the path holds anything else.
Result<> RemoveStaleLink(const std::filesystem::path& link, const std::string& otherEnd) {
    struct stat state = {};
    if (::lstat(link.c_str(), &state) != 0)
        return {};
    // A stale link may lead to the new line: the system reuses the numbers of closed pseudo-terminals.
    const bool isStale = S_ISLNK(state.st_mode) && (::stat(link.c_str(), &state) != 0 || TargetOf(link) == otherEnd);
    if (!isStale)
        return Error{FromUtf8(link.native() + " exists and is not a link left over by a controller that has ended")};
    if (::unlink(link.c_str()) != 0)
        return Failure(link.native());
    return {};
}

// Makes the link. From the first moment on it is removed when a signal ends the process.
Result<> MakeLink(const std::filesystem::path& link, const std::string& otherEnd) {
    // In this order: a signal between two steps finds no link that it does not know.
    link.native().copy(linkToRemove, sizeof linkToRemove - 1);
    linkToRemove[link.native().size()] = '\0';
    CatchEndingSignals();
    if (::symlink(otherEnd.c_str(), link.c_str()) == 0)
        return {};
    const Error error = Failure(link.native());
    ReleaseEndingSignals();
    return error;
}

class LinkedLine : public DescriptorLine {
public:
    LinkedLine(int descriptor, std::filesystem::path link, std::string otherEnd)
        : DescriptorLine(descriptor), link(std::move(link)), otherEnd(std::move(otherEnd)) {}

    ~LinkedLine() override {
        // Another controller may have made the link its own meanwhile.
        if (TargetOf(link) == otherEnd)
            ::unlink(link.c_str());
        ReleaseEndingSignals();
    }

private:
    // A program whose settings change closes its port and opens it again at once.
    bool IsOpenedAgain(Clock::TimePoint deadline) override {
        constexpr std::chrono::seconds timeToReopen(2);
        return WaitForPeer(std::min(deadline, SteadyClock().Now() + timeToReopen)) == Status::Done;
    }

    const std::filesystem::path link;
    const std::string otherEnd;
};

}

Result<std::unique_ptr<ControllerLine>> MakePseudoTerminal(const std::filesystem::path& link) {
    const std::filesystem::path place = std::filesystem::absolute(link);
    if (place.native().size() >= sizeof linkToRemove)
        return Error{u"the name of the link is too long"};
    Descriptor ownEnd(::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC));
    char otherEnd[128] = {};
    const bool isMade = ownEnd.Number() >= 0 && ::grantpt(ownEnd.Number()) == 0 && ::unlockpt(ownEnd.Number()) == 0 &&
                        ::ptsname_r(ownEnd.Number(), otherEnd, sizeof otherEnd) == 0 && MakeRaw(otherEnd);
    if (!isMade)
        return Failure("no pseudo-terminal");
    if (Result<> removed = RemoveStaleLink(place, otherEnd); !removed)
        return removed.Reason();
    if (Result<> made = MakeLink(place, otherEnd); !made)
        return made.Reason();
    return std::unique_ptr<ControllerLine>(std::make_unique<LinkedLine>(ownEnd.Release(), place, otherEnd));
}

}
