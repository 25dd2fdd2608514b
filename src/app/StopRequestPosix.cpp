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
        // One that was ignored from the start is meant to be: nohup, or a script's background.
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
    // A reader of the output that went away, or a file that may not grow, is an error to be told of, not the end.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

void WaitForStopRequest() {
    const sigset_t signals = StopSignals();
    int signal = 0;
    while (sigwait(&signals, &signal) != 0) {
    }
}

void EndStopRequests() {
    ::kill(::getpid(), SIGTERM);
}

}
