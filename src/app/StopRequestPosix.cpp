#include "app/StopRequest.h"

#include <csignal>
#include <initializer_list>

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <unistd.h>

namespace tarvin {

namespace {

sigset_t StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        // The caller wants a signal ignored that was ignored from the start: nohup, or the background of a script.
        struct sigaction present = {};
        ::sigaction(signal, nullptr, &present);
        if (signal == SIGTERM || present.sa_handler != SIG_IGN)
            sigaddset(&signals, signal);
    }
    return signals;
}

// A process that was started in no terminal, or has lost its own, has none to open.
bool HasTerminal() {
    const int terminal = ::open("/dev/tty", O_RDWR | O_NOCTTY | O_CLOEXEC | O_NONBLOCK);
    if (terminal < 0)
        return false;
    ::close(terminal);
    return true;
}

bool hadTerminal = false;

// The kernel itself sends SIGHUP to the program in front of a terminal that is closed. The shell then sends one to
// those in the background.
bool AsksForReload(const siginfo_t& signal) {
    const bool isTerminalClosed = signal.si_code == SI_KERNEL || (hadTerminal && !HasTerminal());
    return signal.si_signo == SIGHUP && !isTerminalClosed;
}

}

void PrepareStopRequests() {
    hadTerminal = HasTerminal();
    const sigset_t signals = StopSignals();
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    // Without a reader of the output, or with a file that may not grow, a write fails. That is an error to report, and
    // no reason to end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void PrepareStopRequestsOfManager() {
    PrepareStopRequests();
}

void WaitForStopRequest(const std::function<void()>& reload) {
    const sigset_t signals = StopSignals();
    for (;;) {
        siginfo_t signal = {};
        if (::sigwaitinfo(&signals, &signal) < 0)
            continue;
        if (!reload || !AsksForReload(signal))
            return;
        reload();
    }
}

void PostReloadRequest() {
    ::kill(::getpid(), SIGHUP);
}

void EndStopRequests() {
    ::kill(::getpid(), SIGTERM);
}

}
