#pragma once
// All that can be seen of the conversation after an event. Views of the model and of the program are compared as text.

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tarvin::test {

using Files = std::map<std::string, std::string>; // content by name

struct Quality {
    std::int64_t damaged = 0;
    std::int64_t repeats = 0;
    std::int64_t driverErrors = 0;
};

struct View {
    std::string sent;                 // by the event
    std::vector<std::string> records; // of transfers that the event has ended or refused

    int state = 0;
    std::string number;         // of the file that status and caption name
    bool hasTransfer = false;   // under way, or waiting
    std::int64_t bytesDone = 0; // where the status shows it
    std::int64_t bytesTotal = 0;
    std::int64_t barPosition = 0;
    std::int64_t barRange = 0; // of a transfer under way
    Quality quality;           // of a transfer
    bool sendsChecksums = false;
    bool isHeldUp = false;

    Files files;
    std::map<std::string, std::vector<std::string>> replaced; // older contents by name, oldest first
    std::map<std::string, std::vector<std::string>> whole;    // uploads that could not take their name

    std::string Text() const;
};

std::string RecordText(bool isUpload, const std::string& outcome, const std::string& number, std::int64_t byteCount,
                       std::int64_t lineCount, const Quality& quality);

// States that the status describes with a byte count.
bool ShowsBytes(int state);

}
