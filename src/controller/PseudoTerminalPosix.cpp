// Makes a pseudo-terminal and the link to its other end, and sees to it that the link does not outlive the process.

#include "base/System.h"
#include "controller/DescriptorLine.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <iterator>

#include <fcntl.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::controller {

namespace {

constexpr int endingSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGPIPE};
constexpr std::size_t endingSignalCount = std::size(endingSignals);
struct sigaction actionsBefore[endingSignalCount];
// A signal handler can allocate nothing: the link's path waits here. Empty while there is no link.
char linkToRemove[4096];

void RemoveLinkAndEnd(int signalNumber) {
    if (linkToRemove[0] != '\0')
        ::unlink(linkToRemove);
    // The handler is gone by now, so that this ends the process as the sender of the signal expects.
    ::raise(signalNumber);
}

void CatchEndingSignals() {
    struct sigaction action = {};
    action.sa_handler = &RemoveLinkAndEnd;
    action.sa_flags = static_cast<int>(SA_RESETHAND);
    for (std::size_t index = 0; index < endingSignalCount; ++index) {
        ::sigaction(endingSignals[index], nullptr, &actionsBefore[index]);
        // As "nohup" arranges it: what is ignored ends nothing.
        if (actionsBefore[index].sa_handler != SIG_IGN)
            ::sigaction(endingSignals[index], &action, nullptr);
    }
}

void ReleaseEndingSignals() {
    for (std::size_t index = 0; index < endingSignalCount; ++index)
        ::sigaction(endingSignals[index], &actionsBefore[index], nullptr);
    linkToRemove[0] = '\0';
}

std::string Reason(const std::string& what) {
    return what + ": " + ToUtf8(SystemErrorText(static_cast<unsigned long>(errno)));
}

std::string TargetOf(const std::filesystem::path& link) {
    std::error_code ignored;
    return std::filesystem::read_symlink(link, ignored).native();
}

// The other end is opened once and closed again: from then on the line is raw, and seen as hung up until somebody
// opens it. The settings stay while the controller holds its own end.
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

// False, with the reason, if something else than a link that leads nowhere has the name.
bool ClearTheWay(const std::filesystem::path& link, const std::string& otherEnd, std::string& error) {
    struct stat state = {};
    if (::lstat(link.c_str(), &state) != 0)
        return true;
    // The number of a line that is gone may have come back as this one's.
    const bool isStale = S_ISLNK(state.st_mode) && (::stat(link.c_str(), &state) != 0 || TargetOf(link) == otherEnd);
    if (!isStale) {
        error = link.native() + " exists and is not a link left over by a controller that has ended";
        return false;
    }
    if (::unlink(link.c_str()) == 0)
        return true;
    error = Reason(link.native());
    return false;
}

class PseudoTerminal : public DescriptorLine {
public:
    PseudoTerminal(int openDescriptor, std::filesystem::path linkPath, std::string otherEndName)
        : DescriptorLine(openDescriptor), link(std::move(linkPath)), otherEnd(std::move(otherEndName)) {}

    ~PseudoTerminal() override {
        // Not if somebody else has taken the name since.
        if (TargetOf(link) == otherEnd)
            ::unlink(link.c_str());
        ReleaseEndingSignals();
    }

private:
    // A program that takes on other settings closes its port and opens it again.
    bool IsOpenedAgain(Clock::TimePoint deadline) override {
        constexpr std::chrono::seconds timeToReopen(2);
        return WaitForPeer(std::min(deadline, SteadyClock().Now() + timeToReopen)) == Status::Done;
    }

    const std::filesystem::path link;
    const std::string otherEnd;
};

}

std::unique_ptr<ControllerLine> MakePseudoTerminal(const std::filesystem::path& link, std::string& error) {
    const std::filesystem::path place = std::filesystem::absolute(link);
    if (place.native().size() >= sizeof linkToRemove) {
        error = "the name of the link is too long";
        return nullptr;
    }
    const int descriptor = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    char otherEnd[128] = {};
    const bool isMade = descriptor >= 0 && ::grantpt(descriptor) == 0 && ::unlockpt(descriptor) == 0 &&
                        ::ptsname_r(descriptor, otherEnd, sizeof otherEnd) == 0 && MakeRaw(otherEnd);
    if (!isMade)
        error = Reason("no pseudo-terminal");
    bool isLinked = false;
    if (isMade && ClearTheWay(place, otherEnd, error)) {
        // In this order, so that no signal finds a link that nobody removes.
        place.native().copy(linkToRemove, sizeof linkToRemove - 1);
        linkToRemove[place.native().size()] = '\0';
        CatchEndingSignals();
        isLinked = ::symlink(otherEnd, place.c_str()) == 0;
        if (!isLinked) {
            error = Reason(place.native());
            ReleaseEndingSignals();
        }
    }
    if (isLinked)
        return std::make_unique<PseudoTerminal>(descriptor, place, otherEnd);
    if (descriptor >= 0)
        ::close(descriptor);
    return nullptr;
}

}
