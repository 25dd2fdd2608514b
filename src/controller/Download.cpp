#include "controller/MessageCodes.h"
#include "controller/Transfer.h"

namespace tarvin::controller {

namespace {

// The program sends a line three times at most.
constexpr int mostRefusals = 3;
constexpr std::size_t mostBytes = std::size_t(1) << 30;

class Downloading {
public:
    Downloading(Conversation& runningConversation, LineSink& lineSink, TransferRecord& transferRecord)
        : conversation(runningConversation), sink(lineSink), record(transferRecord) {}

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
        if (message.text == downloadEndCode)
            return TakeEnd();
        if (!message.text.starts_with(downloadLineCode) || message.text.size() == downloadLineCode.size())
            return conversation.Unexpected(message, downloadLineCode);
        const std::string_view lineText = message.text.substr(downloadLineCode.size());
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
        // After any other answer nothing would be repeated.
        for (const std::string_view code : {downloadEndCode, acknowledgeCode, linkAnswerCode}) {
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
        return conversation.Send(lineRefusedCode);
    }

    Outcome TakeLine(std::string_view lineText) {
        if (refusals == mostRefusals)
            return Refuse();
        if (Outcome taken = sink.Take(lineText); !taken.IsRight())
            return taken;
        const bool stops = conversation.StopsAfter(record.lines + 1);
        if (!stops) {
            if (Outcome sent = conversation.Send(lineAcceptedCode); !sent.IsRight())
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
    // Of the line that is waited for.
    int refusals = 0;
    bool isRefusedOnPurpose = false;
    std::string firstCopy;
    bool isAtEnd = false;
};

}

Outcome Download(Conversation& conversation, std::string_view number, LineSink& sink, TransferRecord& record) {
    Outcome outcome = conversation.RequireAcknowledge(std::string(downloadRequestCode).append(number));
    if (!outcome.IsRight())
        return outcome;
    if (conversation.DamagedButAcknowledged() > 0)
        return Outcome::Failed("the request went out damaged and was acknowledged");
    return Downloading(conversation, sink, record).Run();
}

}
