#pragma once
// The exchanges from which all commands are made: questions with an answer in time, the link test and refusals. Any
// message that the controller did not ask for is a failure. One thread at a time. Each operation blocks until it has
// its outcome.

#include "controller/MessageLink.h"
#include "controller/Outcome.h"

namespace tarvin::controller {

class Conversation {
public:
    struct Settings {
        Clock::Duration answerTime = std::chrono::seconds(5);
        // The byte that the program must send before its answer to a download request.
        std::optional<char> startCharacter;
        // Each data line of a download whose number is a multiple of this is refused once. 0: none.
        std::size_t refusesEvery = 0;
        // The first transfer with this many data lines stops after them. 0: none.
        std::size_t stopsAfter = 0;
    };

    // `line`, `link` and `clock` outlive the conversation. `link` is on `line`.
    Conversation(ControllerLine& line, MessageLink& link, const Clock& clock, const Settings& settings);

    // Waits until a program opens the line and answers the link test. Repeats the test, because the first bytes may be
    // lost while a program opens the line. Drops all other messages meanwhile.
    Outcome Connect(Clock::Duration limit);

    // Called before each exchange. Right if the program has been silent since the last one.
    Outcome Begin();
    // Called after the last exchange. Right if the program is silent for a moment longer.
    Outcome End();

    // Sends up to three link tests until one is answered. Sets `repeats` to the number of tests after the first.
    Outcome TestLink(std::size_t& repeats);
    // Right only if the answer to the request is this refusal.
    Outcome ExpectRefusal(std::string_view request, std::string_view refusal);
    // Sends the request and requires the acknowledgement. Counts a request that went out damaged and was acknowledged:
    // the program cannot have understood it.
    Outcome RequireAcknowledge(std::string_view request);
    std::size_t DamagedButAcknowledged() const { return damagedButAcknowledged; }

    Outcome Send(std::string_view text);
    // Receives the next message, whole or damaged, within the answer time. With `leading`, that byte must precede it.
    Outcome Receive(ReceivedMessage& message, std::optional<char> leading = std::nullopt);
    // Receives a message and requires this text.
    Outcome ReceiveExactly(std::string_view text);
    // The failure that says what came instead of the message `wanted`.
    Outcome Unexpected(const ReceivedMessage& message, std::string_view wanted) const;

    // Keeps the line and answers nothing until the program has closed it for two seconds. A serial device does not show
    // that: there it never returns.
    Outcome Stay();

    // True if the transfer has to stop after this many lines. True only once.
    bool StopsAfter(std::size_t lineCount);
    const Settings& Chosen() const { return settings; }
    const MessageLink& Link() const { return link; }

private:
    Outcome Silence(Clock::TimePoint deadline);
    bool TryConnect(Clock::TimePoint deadline);
    // True, and counts it, if the message answers a link test that is still open.
    bool TakeLinkTestAnswer(const ReceivedMessage& message);
    Outcome Ask(std::string_view request, ReceivedMessage& answer);

    ControllerLine& line;
    MessageLink& link;
    const Clock& clock;
    const Settings settings;
    std::size_t unansweredLinkTests = 0;
    std::size_t damagedButAcknowledged = 0;
    bool hasStopped = false;
};

}
