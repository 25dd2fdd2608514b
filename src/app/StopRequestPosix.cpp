#include "app/StopRequest.h"

#include <csignal>
#include <initializer_list>

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

}

void PrepareStopRequests() {
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

void WaitForStopRequest(const std::function<void()>& /*reload*/) {
    const sigset_t signals = StopSignals();
    int signal = 0;
    while (sigwait(&signals, &signal) != 0) {
    }
}

void PostReloadRequest() {
    ::kill(::getpid(), SIGHUP);
}

void EndStopRequests() {
    ::kill(::getpid(), SIGTERM);
}

}
