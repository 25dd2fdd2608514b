#pragma once
// What all exchanges have in common: asking and being answered within a time, the link test, the refusals, and the
// strictness about everything that comes without having been asked for. Knows nothing of files and lines of NC text.
// One thread at a time; each operation blocks until it is decided.

#include "controller/MessageLink.h"
#include "controller/Outcome.h"

namespace tarvin::controller {

class Conversation {
public:
    struct Settings {
        Clock::Duration answerTime = std::chrono::seconds(5);
        // What the program puts before its answer to a download request.
        std::optional<char> startCharacter;
        // Every so many data lines of a download are refused once; 0 for none.
        std::size_t refusesEvery = 0;
        // The first transfer that gets so far is left lying after this many data lines; 0 for none.
        std::size_t stopsAfter = 0;
    };

    // All outlive the conversation.
    Conversation(ControllerLine& messageLine, MessageLink& messages, const Clock& timeSource,
                 const Settings& chosenSettings);

    // Waits until somebody has the line open and answers the link test, which is repeated, since the first bytes may be
    // lost when a line is opened. Whatever else comes meanwhile is thrown away.
    Outcome Connect(Clock::Duration limit);

    // Before each exchange: right if the program has kept silent since the last one.
    Outcome Begin();
    // After the last one, the same with a moment's wait.
    Outcome End();

    // `repeats` counts the tests that had to be sent again.
    Outcome TestLink(std::size_t& repeats);
    // Right if, and only if, the answer to the request is the refusal.
    Outcome ExpectRefusal(std::string_view request, std::string_view refusal);
    // Sends the request and requires the acknowledgement. One that was damaged on its way and is acknowledged all the
    // same is counted: the program cannot have understood what was meant.
    Outcome RequireAcknowledge(std::string_view request);
    std::size_t DamagedButAcknowledged() const { return damagedButAcknowledged; }

    Outcome Send(std::string_view text);
    // The next message, whole or damaged, within the answer time. `leading`, where given, has to stand before it.
    Outcome Receive(ReceivedMessage& message, std::optional<char> leading = std::nullopt);
    // Receives a message and requires it to be this one.
    Outcome ReceiveExactly(std::string_view text);
    Outcome Unexpected(const ReceivedMessage& message, std::string_view wanted) const;

    // Keeps the line and answers nothing, until nobody has had it open for a moment; where that cannot be seen, for
    // good.
    Outcome Stay();

    // True, and only once, for the transfer that is to be left lying after so many lines.
    bool StopsAfter(std::size_t lineCount);
    const Settings& Chosen() const { return settings; }
    const MessageLink& Link() const { return link; }

private:
    Outcome Silence(Clock::TimePoint deadline);
    bool TryConnect(Clock::TimePoint deadline);
    bool IsLateLinkAnswer(const ReceivedMessage& message);
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
