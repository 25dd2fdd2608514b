#include "Deadline.h"

#include <csignal>
#include <stdexcept>

#include <sys/time.h>

namespace tarvin::bench {

namespace {

volatile std::sig_atomic_t hasPassed = 0;

void OnAlarm(int) {
    hasPassed = 1;
}

void SetTimer(std::chrono::seconds first, std::chrono::seconds then) {
    const itimerval timer = {{then.count(), 0}, {first.count(), 0}};
    ::setitimer(ITIMER_REAL, &timer, nullptr);
}

}

Deadline::Deadline(std::chrono::seconds allowed) {
    hasPassed = 0;
    struct sigaction action = {};
    action.sa_handler = OnAlarm;
    ::sigaction(SIGALRM, &action, nullptr);
    // Repeated, because an alarm that comes just before a call begins to block does not interrupt it.
    SetTimer(allowed, std::chrono::seconds(1));
}

Deadline::~Deadline() {
    SetTimer(std::chrono::seconds(0), std::chrono::seconds(0));
}

void Deadline::ThrowIfPassed() {
    if (hasPassed != 0)
        throw std::runtime_error("the program does not answer");
}

}
