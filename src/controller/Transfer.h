#pragma once
// The two transfers of a file, as the controller runs them. They know nothing of where the lines come from or go to.
// One thread at a time; they block until the transfer is over.

#include "controller/Conversation.h"
#include "controller/LineSink.h"

#include <span>

namespace tarvin::controller {

struct TransferRecord {
    std::size_t lines = 0;
    // Two more for each line, as the line ends in the file.
    std::size_t bytes = 0;
    // Data lines that were asked for again.
    std::size_t repeats = 0;
    // From the request until the last answer.
    Clock::Duration elapsed = {};
};

// Sends the lines, none of which is empty, as the file of that number.
Outcome Upload(Conversation& conversation, std::string_view number, std::span<const std::string> lines,
               TransferRecord& record);

// Asks for the file of that number and gives each of its lines to the sink, once.
Outcome Download(Conversation& conversation, std::string_view number, LineSink& sink, TransferRecord& record);

}
