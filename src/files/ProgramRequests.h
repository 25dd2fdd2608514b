#pragma once
// Requests from one process to the program that serves a machine: to show its window, or to read its settings again.
//
// POSIX: a socket with an abstract name, which the system removes with the process. Only the same user and root are
// heard. Windows: events; those to show a window are for the user's session, the others for administrators too.

#include "base/KelText.h"

#include <chrono>
#include <functional>
#include <memory>

namespace tarvin {

enum class RequestKind { Raise, Reload };

enum class RequestAnswer {
    Done,
    Later,  // it will be done when a transfer has ended
    Refused // the program has told its user why
};

// Takes the requests of one kind.
class ProgramRequests {
public:
    // Answers the program that has asked. One that is destroyed uncalled tells it that this program is going. Any
    // thread.
    using Answer = std::function<void(RequestAnswer)>;

    // Requests wait until Serve. A program that prepares for stop requests calls this after PrepareStopRequests.
    explicit ProgramRequests(RequestKind kind);
    // Ends.
    ~ProgramRequests();
    ProgramRequests(const ProgramRequests&) = delete;
    ProgramRequests& operator=(const ProgramRequests&) = delete;

    // For RequestFrom. Empty if the system offers no such address.
    const KelText& Address() const { return address; }

    // Calls `take` for each request from now on, on a thread of its own. Call it once.
    void Serve(std::function<void(Answer)> take);

    // Takes no more requests. Returns when no call of `take` runs any more. Programs that ask later find this one gone.
    void End();

private:
    struct Endpoint;

    KelText address;
    std::unique_ptr<Endpoint> endpoint; // null without an address
};

enum class RequestOutcome {
    Done,
    Later,
    Refused,
    Gone,  // no program takes such requests there, or it is going, or it does not hear this user
    Silent // the program has not answered in time
};

// Asks the program at the address. Blocks for its answer, for `patience` at most.
RequestOutcome RequestFrom(RequestKind kind, const KelText& address, std::chrono::milliseconds patience);

}
