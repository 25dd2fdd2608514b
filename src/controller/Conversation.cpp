#include "controller/Conversation.h"

#include "controller/ControllerFrame.h"

#include <algorithm>
#include <sstream>

namespace tarvin::controller {

namespace {

constexpr int linkTestAttempts = 3;
// A message that nothing asked for shows within this time after the last exchange.
constexpr std::chrono::milliseconds lastListening(20);
// Far longer than the time that the line gives a program to open it again, which ends at this deadline too.
constexpr std::chrono::hours oneStay(1);

std::string InSeconds(Clock::Duration duration) {
    std::ostringstream text;
    text << std::chrono::duration<double>(duration).count() << " s";
    return text.str();
}

}

Conversation::Conversation(ControllerLine& line, MessageLink& link, const Clock& clock, const Settings& settings)
    : line(line), link(link), clock(clock), settings(settings) {}

Outcome Conversation::Connect(Clock::Duration limit) {
    const Clock::TimePoint deadline = clock.Now() + limit;
    // Short at first, because a program that runs answers fast. Then longer, because a slow line needs more time.
    Clock::Duration patience = std::chrono::milliseconds(50);
    bool wasOpened = false;
    while (clock.Now() < deadline) {
        const auto status = line.WaitForPeer(deadline);
        if (status == ControllerLine::Status::Failed)
            return Outcome::Failed(line.LastError());
        if (status != ControllerLine::Status::Done)
            break;
        wasOpened = true;
        if (TryConnect(std::min(deadline, clock.Now() + patience)))
            return Outcome::Right();
        patience = std::min<Clock::Duration>(2 * patience, std::chrono::milliseconds(800));
    }
    return Outcome::Failed((wasOpened ? "nobody answers the link test in " : "nobody has opened the line in ") +
                           InSeconds(limit));
}

bool Conversation::TryConnect(Clock::TimePoint deadline) {
    link.Discard();
    if (link.Send(code::linkTest, deadline) == MessageLink::SendStatus::Sent)
        ++unansweredLinkTests;
    // The deadline also ends a flow of messages without a pause.
    do {
        const ReceivedMessage message = link.Receive(deadline);
        switch (message.status) {
        case ReceivedMessage::Status::Whole:
            if (TakeLinkTestAnswer(message))
                return true;
            break;
        case ReceivedMessage::Status::Damaged:
            break;
        case ReceivedMessage::Status::Unusable:
            link.Discard();
            // A line that fails at once would otherwise be tried without any pause.
            line.Pause(std::chrono::milliseconds(2));
            return false;
        case ReceivedMessage::Status::HungUp:
        case ReceivedMessage::Status::TimedOut:
            return false;
        }
    } while (clock.Now() < deadline);
    return false;
}

// A link test that was repeated too early brings its answer later, perhaps in the middle of another exchange.
bool Conversation::TakeLinkTestAnswer(const ReceivedMessage& message) {
    if (unansweredLinkTests == 0 || message.status != ReceivedMessage::Status::Whole ||
        message.text != code::linkTestAnswer)
        return false;
    --unansweredLinkTests;
    return true;
}

Outcome Conversation::Begin() {
    link.Turnaround().Clear();
    damagedButAcknowledged = 0;
    return Silence(clock.Now());
}

Outcome Conversation::End() {
    return Silence(clock.Now() + lastListening);
}

Outcome Conversation::Silence(Clock::TimePoint deadline) {
    for (;;) {
        const ReceivedMessage message = link.Receive(deadline);
        switch (message.status) {
        case ReceivedMessage::Status::HungUp:
            return Outcome::Right();
        case ReceivedMessage::Status::Unusable:
            return Outcome::Failed(link.LastError());
        case ReceivedMessage::Status::TimedOut:
            if (!link.HasUnread())
                return Outcome::Right();
            if (unansweredLinkTests == 0 || clock.Now() >= deadline + settings.answerTime)
                return Outcome::Failed(Quoted(link.Unread()) + " came without being asked for");
            // The rest of a late answer to a link test is still on its way.
            deadline += settings.answerTime;
            break;
        case ReceivedMessage::Status::Whole:
        case ReceivedMessage::Status::Damaged:
            if (!TakeLinkTestAnswer(message))
                return Outcome::Failed(Quoted(message.text) + " came without being asked for");
            break;
        }
    }
}

Outcome Conversation::TestLink(std::size_t& repeats) {
    Outcome outcome;
    for (int attempt = 0; attempt < linkTestAttempts; ++attempt) {
        repeats = static_cast<std::size_t>(attempt);
        if (outcome = Send(code::linkTest); !outcome.IsRight())
            return outcome;
        ++unansweredLinkTests;
        const ReceivedMessage message = link.Receive(clock.Now() + settings.answerTime);
        if (TakeLinkTestAnswer(message))
            return Outcome::Right();
        outcome = Unexpected(message, code::linkTestAnswer);
        if (message.status != ReceivedMessage::Status::TimedOut && message.status != ReceivedMessage::Status::Damaged)
            return outcome;
        link.Discard();
    }
    return Outcome::Failed(outcome.reason + ", " + std::to_string(linkTestAttempts) + " times");
}

Outcome Conversation::Send(std::string_view text) {
    if (link.HasUnread()) {
        if (Outcome silence = Silence(clock.Now()); !silence.IsRight())
            return silence;
    }
    if (link.Send(text, clock.Now() + settings.answerTime) != MessageLink::SendStatus::Sent)
        return Outcome::Failed(link.LastError());
    return Outcome::Right();
}

Outcome Conversation::Receive(ReceivedMessage& message, std::optional<char> leading) {
    const Clock::TimePoint deadline = clock.Now() + settings.answerTime;
    do {
        message = link.Receive(deadline, leading);
    } while (TakeLinkTestAnswer(message));
    if (message.status != ReceivedMessage::Status::Whole && message.status != ReceivedMessage::Status::Damaged)
        return Unexpected(message, {});
    if (leading && !message.hadLeading)
        return Outcome::Failed(Quoted(message.text) + " came without the start character");
    return Outcome::Right();
}

Outcome Conversation::Unexpected(const ReceivedMessage& message, std::string_view wanted) const {
    switch (message.status) {
    case ReceivedMessage::Status::TimedOut:
        if (link.HasUnread())
            return Outcome::Failed(Quoted(link.Unread()) + " came, and no carriage return in " +
                                   InSeconds(settings.answerTime));
        return Outcome::Failed("no answer in " + InSeconds(settings.answerTime));
    case ReceivedMessage::Status::HungUp:
    case ReceivedMessage::Status::Unusable:
        return Outcome::Failed(link.LastError());
    case ReceivedMessage::Status::Damaged:
        return Outcome::Failed(Quoted(message.text) + " came, which has a wrong checksum");
    case ReceivedMessage::Status::Whole:
        break;
    }
    if (message.text == code::cannotRead)
        return Outcome::Failed("refused with AAAK01: the program could not open the file for reading");
    if (message.text == code::cannotGoOn)
        return Outcome::Failed("refused with AAAK03: the program could not open or write the file, or has given up");
    return Outcome::Failed(Quoted(message.text) + " came instead of " + Quoted(wanted));
}

Outcome Conversation::Ask(std::string_view request, ReceivedMessage& answer) {
    if (Outcome sent = Send(request); !sent.IsRight())
        return sent;
    return Receive(answer, request.starts_with(code::downloadRequest) ? settings.startCharacter : std::nullopt);
}

Outcome Conversation::ReceiveExactly(std::string_view text) {
    ReceivedMessage message;
    if (Outcome received = Receive(message); !received.IsRight())
        return received;
    if (message.status == ReceivedMessage::Status::Whole && message.text == text)
        return Outcome::Right();
    return Unexpected(message, text);
}

Outcome Conversation::ExpectRefusal(std::string_view request, std::string_view refusal) {
    ReceivedMessage answer;
    if (Outcome asked = Ask(request, answer); !asked.IsRight())
        return asked;
    if (answer.status == ReceivedMessage::Status::Whole && answer.text == refusal)
        return Outcome::Right();
    return Unexpected(answer, refusal);
}

Outcome Conversation::RequireAcknowledge(std::string_view request) {
    ReceivedMessage answer;
    if (Outcome asked = Ask(request, answer); !asked.IsRight())
        return asked;
    if (answer.status != ReceivedMessage::Status::Whole || answer.text != code::acknowledge)
        return Unexpected(answer, code::acknowledge);
    if (link.FateOfLastMessage() == Misbehaviour::Fate::Damaged)
        ++damagedButAcknowledged;
    return Outcome::Right();
}

Outcome Conversation::Stay() {
    for (;;) {
        char ignored[256];
        std::size_t byteCount = 0;
        switch (line.Read(ignored, sizeof ignored, clock.Now() + oneStay, byteCount)) {
        case ControllerLine::Status::Done:
        case ControllerLine::Status::TimedOut:
            break;
        case ControllerLine::Status::HungUp:
            return Outcome::Right();
        case ControllerLine::Status::Failed:
            return Outcome::Failed(line.LastError());
        }
    }
}

bool Conversation::StopsAfter(std::size_t lineCount) {
    if (hasStopped || settings.stopsAfter == 0 || lineCount != settings.stopsAfter)
        return false;
    hasStopped = true;
    return true;
}

}
