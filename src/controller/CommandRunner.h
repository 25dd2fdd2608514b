#pragma once
// Carries out single commands in a conversation and says in one line how each went. One thread at a time.

#include "controller/CommandLine.h"
#include "controller/Transfer.h"

namespace tarvin::controller {

class CommandRunner {
public:
    // Both outlive the runner.
    CommandRunner(Conversation& runningConversation, MessageLink& messages, const Clock& timeSource)
        : conversation(runningConversation), link(messages), clock(timeSource) {}

    // `lines` are those of the command's file, for the commands that read one. Blocks until the command is decided.
    Outcome Run(const Command& command, std::span<const std::string> lines);
    // About the last command, without a line end: "get 1234: 412 lines, ..., ok", "test: FAILED: no answer in 5 s".
    std::string Report(const Command& command, const Outcome& outcome) const;

private:
    Outcome Perform(const Command& command, std::span<const std::string> lines);
    Outcome GetInto(const Command& command);
    std::string Figures(const Command& command) const;

    Conversation& conversation;
    MessageLink& link;
    const Clock& clock;
    TransferRecord record;
};

}
