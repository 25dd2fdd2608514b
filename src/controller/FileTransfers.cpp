#include "controller/FileTransfers.h"

#include "controller/ControllerFrame.h"

#include <cassert>

namespace tarvin::controller {

namespace {

// The program sends a line at most three times.
constexpr int mostRefusals = 3;
// A larger download counts as endless.
constexpr std::size_t mostBytes = std::size_t(1) << 30;

Outcome SendLines(Conversation& conversation, std::span<const std::string> lines, TransferRecord& record) {
    std::string message(code::uploadData);
    for (const std::string& lineText : lines) {
        assert(!lineText.empty());
        message.resize(code::uploadData.size());
        message += lineText;
        if (Outcome outcome = conversation.RequireAcknowledge(message); !outcome.IsRight())
            return Outcome::Failed("line " + std::to_string(record.lines + 1) + ": " + outcome.reason);
        ++record.lines;
        record.bytes += lineText.size() + 2;
        if (conversation.StopsAfter(record.lines))
            return Outcome::Stopped("stopped after line " + std::to_string(record.lines));
    }
    return Outcome::Right();
}

// A download after its request has been acknowledged.
class Downloading {
public:
    Downloading(Conversation& conversation, LineSink& sink, TransferRecord& record)
        : conversation(conversation), sink(sink), record(record) {}

    Outcome Run() {
        while (!isAtEnd) {
            ReceivedMessage message;
            Outcome outcome = conversation.Receive(message);
            if (outcome.IsRight())
                outcome = Answer(message);
            if (outcome.kind == Outcome::Kind::Failed && !isAtEnd)
                return Outcome::Failed("line " + std::to_string(record.lines + 1) + ": " + outcome.reason);
            if (!outcome.IsRight())
                return outcome;
        }
        return Outcome::Right();
    }

private:
    Outcome Answer(const ReceivedMessage& message) {
        if (message.status == ReceivedMessage::Status::Damaged)
            return AnswerDamaged(message);
        if (message.text == code::downloadEnd)
            return TakeEnd();
        // The program skips empty lines of a file, so a data line without data is wrong.
        if (!message.text.starts_with(code::downloadData) || message.text.size() == code::downloadData.size())
            return conversation.Unexpected(message, code::downloadData);
        const std::string_view lineText = message.text.substr(code::downloadData.size());
        if (isRefusedOnPurpose && lineText != firstCopy)
            return Outcome::Failed("the repeated line is not the line that was refused");
        const std::size_t refusesEvery = conversation.Chosen().refusesEvery;
        if (refusesEvery != 0 && (record.lines + 1) % refusesEvery == 0 && !isRefusedOnPurpose) {
            isRefusedOnPurpose = true;
            firstCopy = lineText;
            return Refuse();
        }
        return TakeLine(lineText);
    }

    Outcome AnswerDamaged(const ReceivedMessage& message) {
        // The program repeats only data lines. A damaged message of another kind cannot be had again.
        for (const std::string_view code : {code::downloadEnd, code::acknowledge, code::linkTestAnswer}) {
            if (message.text.starts_with(code))
                return conversation.Unexpected(message, code);
        }
        return Refuse();
    }

    Outcome Refuse() {
        if (refusals == mostRefusals)
            return Outcome::Failed("refused " + std::to_string(mostRefusals) + " times, and it was sent once more");
        ++refusals;
        ++record.repeats;
        return conversation.Send(code::dataBad);
    }

    Outcome TakeLine(std::string_view lineText) {
        // The line came a fourth time. Refuse() turns that into the failure.
        if (refusals == mostRefusals)
            return Refuse();
        if (Outcome taken = sink.Take(lineText); !taken.IsRight())
            return taken;
        // A controller that stops leaves the program waiting for this acknowledgement.
        const bool stops = conversation.StopsAfter(record.lines + 1);
        if (!stops) {
            if (Outcome sent = conversation.Send(code::dataGood); !sent.IsRight())
                return sent;
        }
        refusals = 0;
        isRefusedOnPurpose = false;
        ++record.lines;
        record.bytes += lineText.size() + 2;
        if (record.bytes > mostBytes)
            return Outcome::Failed("the file has no end");
        return stops ? Outcome::Stopped("stopped after line " + std::to_string(record.lines)) : Outcome::Right();
    }

    Outcome TakeEnd() {
        if (refusals > 0)
            return Outcome::Failed("the end of the file came instead of the refused line");
        isAtEnd = true;
        return sink.TakeEnd();
    }

    Conversation& conversation;
    LineSink& sink;
    TransferRecord& record;
    // The next three describe the line that is due.
    int refusals = 0;
    bool isRefusedOnPurpose = false;
    std::string firstCopy; // its text, if it was refused on purpose
    bool isAtEnd = false;
};

}

Outcome Upload(Conversation& conversation, std::string_view number, std::span<const std::string> lines,
               TransferRecord& record) {
    Outcome outcome = conversation.RequireAcknowledge(std::string(code::uploadRequest).append(number));
    if (outcome.IsRight())
        outcome = SendLines(conversation, lines, record);
    if (!outcome.IsRight())
        return outcome;
    outcome = conversation.RequireAcknowledge(code::uploadEnd);
    if (!outcome.IsRight())
        return Outcome::Failed("end of the file: " + outcome.reason);
    if (const std::size_t damaged = conversation.DamagedButAcknowledged(); damaged > 0)
        return Outcome::Failed(std::to_string(damaged) + " messages went out damaged and were acknowledged");
    return outcome;
}

Outcome Download(Conversation& conversation, std::string_view number, LineSink& sink, TransferRecord& record) {
    Outcome outcome = conversation.RequireAcknowledge(std::string(code::downloadRequest).append(number));
    if (!outcome.IsRight())
        return outcome;
    if (conversation.DamagedButAcknowledged() > 0)
        return Outcome::Failed("the request went out damaged and was acknowledged");
    return Downloading(conversation, sink, record).Run();
}

}
