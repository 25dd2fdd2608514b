#pragma once
// Messages over a line. Sends each message as a frame, with its misbehaviour; cuts received bytes into frames and
// checks them; traces messages and measures turnaround. One thread at a time.

#include "controller/ControllerLine.h"
#include "controller/Misbehaviour.h"
#include "controller/TurnaroundRecord.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// A longer frame is an error of the program.
inline constexpr std::size_t longestFrame = 2000;

struct ReceivedMessage {
    // Unusable: the line failed or the bytes are not a frame. MessageLink::LastError says why.
    enum class Status { Whole, Damaged, TimedOut, HungUp, Unusable };
    Status status = Status::TimedOut;
    // Of a whole message, without checksum character and carriage return. Of a damaged one, all bytes before the
    // carriage return. Valid until the next call.
    std::string_view text;
    // The byte that had to precede the message did precede it.
    bool hadLeading = false;
};

class MessageLink {
public:
    struct Settings {
        MisbehaviourSettings misbehaviour;
        Clock::Duration delayBeforeMessages = {};
        // Gets one readable line about each message. May be null.
        std::ostream* trace = nullptr;
    };

    // `line`, `clock` and the trace outlive the link.
    MessageLink(ControllerLine& line, const Clock& clock, const Settings& settings);

    // Misbehaviour begins with this call, so that the connection can stand first.
    void AllowMisbehaviour() { mayMisbehave = true; }

    enum class SendStatus { Sent, TimedOut, HungUp, Failed };
    // Sends the text as one message. Blocks until the system has taken it or the deadline has passed. A message that
    // the misbehaviour loses counts as sent.
    SendStatus Send(std::string_view text, Clock::TimePoint deadline);
    Misbehaviour::Fate FateOfLastMessage() const { return fate; }

    // Waits for the next message. The misbehaviour may damage a data line. A byte `leading` before the message is
    // removed.
    ReceivedMessage Receive(Clock::TimePoint deadline, std::optional<char> leading = std::nullopt);

    // Bytes that have been read and belong to no received message yet.
    bool HasUnread() const { return begin != end; }
    std::string_view Unread() const { return {buffer.data() + begin, end - begin}; }
    void Discard() { begin = end = searched = 0; }

    // The time of each answer: from just before the last bytes of a message are handed to the system until the end of
    // the next message has been read.
    TurnaroundRecord& Turnaround() { return turnaround; }
    // The time when the end of the last message was read.
    Clock::TimePoint LastArrival() const { return lastArrival; }

    // The reason of the last failure, for people.
    const std::string& LastError() const { return lastError; }

private:
    SendStatus WritePieces(std::string_view bytes, Clock::TimePoint deadline);
    std::optional<std::string_view> NextFrame();
    ReceivedMessage::Status ReadMore(Clock::TimePoint deadline);
    ReceivedMessage Judge(std::string_view frame);
    ReceivedMessage Unusable(std::string reason);
    void TraceSent(std::string_view text, std::string_view bytes);
    void TraceReceived(const ReceivedMessage& message);

    ControllerLine& line;
    const Clock& clock;
    const Settings settings;
    Misbehaviour misbehaviour;
    bool mayMisbehave = false;

    std::string outgoing;
    Misbehaviour::Fate fate = Misbehaviour::Fate::AsMeant;

    // Bytes `begin` to `end` are unread. Those before `searched` hold no carriage return.
    std::vector<char> buffer;
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t searched = 0;
    std::string damagedFrame;

    std::optional<Clock::TimePoint> unansweredSince;
    Clock::TimePoint lastRead;
    Clock::TimePoint lastArrival;
    TurnaroundRecord turnaround;
    std::string lastError;
};

}
