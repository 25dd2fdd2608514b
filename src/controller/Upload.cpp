#include "controller/MessageCodes.h"
#include "controller/Transfer.h"

namespace tarvin::controller {

namespace {

Outcome SendLines(Conversation& conversation, std::span<const std::string> lines, TransferRecord& record) {
    std::string message(uploadLineCode);
    for (const std::string& lineText : lines) {
        message.resize(uploadLineCode.size());
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

}

Outcome Upload(Conversation& conversation, std::string_view number, std::span<const std::string> lines,
               TransferRecord& record) {
    Outcome outcome = conversation.RequireAcknowledge(std::string(uploadRequestCode).append(number));
    if (outcome.IsRight())
        outcome = SendLines(conversation, lines, record);
    if (!outcome.IsRight())
        return outcome;
    outcome = conversation.RequireAcknowledge(uploadEndCode);
    if (!outcome.IsRight())
        return Outcome::Failed("end of the file: " + outcome.reason);
    if (const std::size_t damaged = conversation.DamagedButAcknowledged(); damaged > 0)
        return Outcome::Failed(std::to_string(damaged) + " messages went out damaged and were acknowledged");
    return outcome;
}

}
