#include "controller/MessageLink.h"

#include "controller/ControllerFrame.h"

#include <cstring>
#include <ostream>

namespace tarvin::controller {

namespace {

// Long enough for the program to read one piece of a message before the next one arrives.
constexpr std::chrono::microseconds gapBetweenPieces(300);

}

MessageLink::MessageLink(ControllerLine& line, const Clock& clock, const Settings& settings)
    : line(line), clock(clock), settings(settings), misbehaviour(settings.misbehaviour), buffer(4 * longestFrame) {}

MessageLink::SendStatus MessageLink::Send(std::string_view text, Clock::TimePoint deadline) {
    BuildFrame(text, outgoing);
    fate = mayMisbehave ? misbehaviour.Distort(outgoing) : Misbehaviour::Fate::AsMeant;
    if (mayMisbehave && settings.delayBeforeMessages > Clock::Duration::zero()) {
        line.Pause(settings.delayBeforeMessages);
        deadline += settings.delayBeforeMessages;
    }
    if (settings.trace != nullptr)
        TraceSent(text, outgoing);
    unansweredSince.reset();
    // The controller takes a lost message for sent and waits for its answer in vain.
    if (fate == Misbehaviour::Fate::Lost)
        return SendStatus::Sent;
    return WritePieces(outgoing, deadline);
}

MessageLink::SendStatus MessageLink::WritePieces(std::string_view bytes, Clock::TimePoint deadline) {
    std::size_t start = 0;
    // Without misbehaviour a message is one write, as a controller sends it.
    const std::vector<std::size_t> whole = {};
    const std::vector<std::size_t>& ends = mayMisbehave ? misbehaviour.Cut(bytes.size()) : whole;
    for (std::size_t index = 0; start < bytes.size(); ++index) {
        const std::size_t pieceEnd = index < ends.size() ? ends[index] : bytes.size();
        if (start > 0)
            line.Pause(gapBetweenPieces);
        unansweredSince = clock.Now();
        switch (line.Write(bytes.substr(start, pieceEnd - start), deadline)) {
        case ControllerLine::Status::Done:
            break;
        case ControllerLine::Status::TimedOut:
            lastError = "the line did not take a message in time";
            return SendStatus::TimedOut;
        case ControllerLine::Status::HungUp:
            lastError = "the other side has closed the line";
            return SendStatus::HungUp;
        case ControllerLine::Status::Failed:
            lastError = line.LastError();
            return SendStatus::Failed;
        }
        start = pieceEnd;
    }
    return SendStatus::Sent;
}

ReceivedMessage MessageLink::Receive(Clock::TimePoint deadline, std::optional<char> leading) {
    for (;;) {
        if (const auto frame = NextFrame()) {
            lastArrival = lastRead;
            if (unansweredSince)
                turnaround.Add(lastArrival - *unansweredSince);
            unansweredSince.reset();
            const bool hasLeading = leading && frame->starts_with(*leading);
            ReceivedMessage message = Judge(frame->substr(hasLeading ? 1 : 0));
            message.hadLeading = hasLeading;
            if (settings.trace != nullptr)
                TraceReceived(message);
            return message;
        }
        if (end - begin > longestFrame)
            return Unusable("no carriage return in " + std::to_string(end - begin) + " bytes");
        if (const auto status = ReadMore(deadline); status != ReceivedMessage::Status::Whole)
            return {status, {}, false};
    }
}

std::optional<std::string_view> MessageLink::NextFrame() {
    char* const start = buffer.data() + searched;
    const void* const found = std::memchr(start, frameEnd, end - searched);
    if (found == nullptr) {
        searched = end;
        return std::nullopt;
    }
    const auto endPosition = static_cast<std::size_t>(static_cast<const char*>(found) - buffer.data());
    const std::string_view frame(buffer.data() + begin, endPosition - begin);
    begin = searched = endPosition + 1;
    return frame;
}

// Returns Whole if bytes have arrived.
ReceivedMessage::Status MessageLink::ReadMore(Clock::TimePoint deadline) {
    if (begin > 0) {
        std::memmove(buffer.data(), buffer.data() + begin, end - begin);
        end -= begin;
        searched -= begin;
        begin = 0;
    }
    std::size_t byteCount = 0;
    const auto status = line.Read(buffer.data() + end, buffer.size() - end, deadline, byteCount);
    lastRead = clock.Now();
    end += byteCount;
    switch (status) {
    case ControllerLine::Status::Done:
        return ReceivedMessage::Status::Whole;
    case ControllerLine::Status::TimedOut:
        return ReceivedMessage::Status::TimedOut;
    case ControllerLine::Status::HungUp:
        lastError = "the other side has closed the line";
        return ReceivedMessage::Status::HungUp;
    case ControllerLine::Status::Failed:
        break;
    }
    lastError = line.LastError();
    return ReceivedMessage::Status::Unusable;
}

ReceivedMessage MessageLink::Judge(std::string_view frame) {
    if (frame.size() > longestFrame)
        return Unusable("a message of " + std::to_string(frame.size()) + " bytes came");
    if (!HasRightChecksum(frame))
        return {ReceivedMessage::Status::Damaged, frame, false};
    if (mayMisbehave && misbehaviour.DamagesReceived(frame)) {
        damagedFrame = frame;
        misbehaviour.DamageReceived(damagedFrame);
        return {ReceivedMessage::Status::Damaged, damagedFrame, false};
    }
    return {ReceivedMessage::Status::Whole, frame.substr(0, frame.size() - 1), false};
}

ReceivedMessage MessageLink::Unusable(std::string reason) {
    lastError = std::move(reason);
    return {ReceivedMessage::Status::Unusable, {}, false};
}

void MessageLink::TraceSent(std::string_view text, std::string_view bytes) {
    *settings.trace << "-> " << Readable(text);
    if (fate == Misbehaviour::Fate::Lost)
        *settings.trace << " (lost)";
    else if (bytes.substr(0, bytes.size() - 2) != text || fate == Misbehaviour::Fate::Damaged)
        *settings.trace << " (sent as " << Readable(bytes) << ")";
    *settings.trace << std::endl;
}

void MessageLink::TraceReceived(const ReceivedMessage& message) {
    if (message.status == ReceivedMessage::Status::Unusable)
        *settings.trace << "<- (" << lastError << ")" << std::endl;
    else if (message.status == ReceivedMessage::Status::Damaged)
        *settings.trace << "<- " << Readable(message.text) << " (wrong checksum)" << std::endl;
    else
        *settings.trace << "<- " << Readable(message.text) << std::endl;
}

}
