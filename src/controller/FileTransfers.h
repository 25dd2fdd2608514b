#pragma once
// The transfers of one file, as the controller makes them. One thread at a time. Both block until the transfer is over.

#include "controller/Conversation.h"
#include "controller/NcLines.h"

#include <span>

namespace tarvin::controller {

// The figures of one transfer.
struct TransferRecord {
    std::size_t lines = 0;
    // Including two for the line end of each line.
    std::size_t bytes = 0;
    // Data lines, or link tests, that were asked for or sent again.
    std::size_t repeats = 0;
    // From the request to the last answer.
    Clock::Duration elapsed = {};
};

// Sends the lines as the file with that number. Requires that no line is empty.
Outcome Upload(Conversation& conversation, std::string_view number, std::span<const std::string> lines,
               TransferRecord& record);

// Requests the file with that number and gives each of its lines to the sink once.
Outcome Download(Conversation& conversation, std::string_view number, LineSink& sink, TransferRecord& record);

}
