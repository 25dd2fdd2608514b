#pragma once
// Requests of a second start of the program to the window that serves the machine: to come to the front.
//
// POSIX: a socket with an abstract name, which the system removes with the process. Only the same user and root are
// heard. Windows: events of the user's session.

#include "base/KelText.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tarvin {

class RaiseRequests {
public:
    // Tells the second start that the window is in front. One that is destroyed uncalled tells it that the window is
    // going. Any thread.
    using Answer = std::function<void()>;

    // Requests wait until Serve. Call it after PrepareStopRequests.
    RaiseRequests();
    // Returns when no call of `raise` runs any more.
    ~RaiseRequests();
    RaiseRequests(const RaiseRequests&) = delete;
    RaiseRequests& operator=(const RaiseRequests&) = delete;

    // For RequestRaise. Empty if the system offers no such address.
    const KelText& Address() const { return address; }

    // Calls `raise` for each request from now on, on a thread of its own. Call it once.
    void Serve(std::function<void(Answer)> raise);

private:
    struct Endpoint;

    KelText address;
    std::unique_ptr<Endpoint> endpoint; // null without an address
};

enum class RaiseOutcome {
    Raised,
    Gone,  // no window takes requests there, or it is going
    Silent // the window has not answered in time
};

// Asks the window at the address to come to the front. Blocks for its answer, for `patience` at most.
RaiseOutcome RequestRaise(const KelText& address, std::chrono::milliseconds patience);

}
