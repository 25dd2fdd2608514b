#pragma once
// Messages over a line: frames them, cuts what arrives into frames and checks each, lets the misbehaviour have its way,
// traces, and times the answers. Knows nothing of what a message means. One thread at a time.

#include "controller/ControllerLine.h"
#include "controller/Misbehaviour.h"
#include "controller/TurnaroundRecord.h"

#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// A frame with no end in this many bytes is an error of the other side.
inline constexpr std::size_t longestFrame = 2000;

struct ReceivedMessage {
    // Unusable: the line failed or what came is no frame; the link's LastError says why.
    enum class Status { Whole, Damaged, TimedOut, HungUp, Unusable };
    Status status = Status::TimedOut;
    // Without checksum character and carriage return; of a damaged message all that came before the carriage return.
    // Valid until the next call.
    std::string_view text;
    // The byte that was to stand before the message did.
    bool hadLeading = false;
};

class MessageLink {
public:
    struct Settings {
        MisbehaviourSettings misbehaviour;
        Clock::Duration delayBeforeMessages = {};
        // For one readable line about each message; may be null.
        std::ostream* trace = nullptr;
    };

    // All outlive the link.
    MessageLink(ControllerLine& messageLine, const Clock& timeSource, const Settings& chosenSettings);

    // Nothing goes wrong until it is switched on.
    void AllowMisbehaviour() { mayMisbehave = true; }

    enum class SendStatus { Sent, TimedOut, HungUp, Failed };
    // Sends the text as one message, within the time. `fate` is what the misbehaviour made of it.
    SendStatus Send(std::string_view text, Clock::TimePoint deadline);
    Misbehaviour::Fate FateOfLastMessage() const { return fate; }

    // The next message; the misbehaviour may make a whole data line a damaged one. `leading`, if it stands before the
    // message, is no part of it.
    ReceivedMessage Receive(Clock::TimePoint deadline, std::optional<char> leading = std::nullopt);

    // True while bytes that have been read belong to no message received yet.
    bool HasUnread() const { return begin != end; }
    std::string_view Unread() const { return {buffer.data() + begin, end - begin}; }
    // Forgets them.
    void Discard() { begin = end = searched = 0; }

    // From just before the last byte of a message was handed to the system until the end of the next message had been
    // read.
    TurnaroundRecord& Turnaround() { return turnaround; }
    // When the last message ended.
    Clock::TimePoint LastArrival() const { return lastArrival; }

    // The reason of the last failure, for a person.
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

    // Bytes from `begin` to `end` wait; up to `searched` they hold no carriage return.
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
