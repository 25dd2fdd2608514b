#pragma once
// Carries out single commands in a conversation and reports each in one line. One thread at a time.

#include "controller/CommandLine.h"
#include "controller/FileTransfers.h"

namespace tarvin::controller {

class CommandRunner {
public:
    // All three outlive the runner.
    CommandRunner(Conversation& conversation, MessageLink& link, const Clock& clock)
        : conversation(conversation), link(link), clock(clock) {}

    // Blocks until the command has its outcome. `lines` are the lines of the command's file, if it reads one.
    Outcome Run(const Command& command, std::span<const std::string> lines);
    // One line about the last command, without a line end: "get 1234: 412 lines, ..., ok", "test: FAILED: no answer in
    // 5 s".
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
