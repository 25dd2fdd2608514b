#pragma once
// Judges received messages: by the errors that the driver reported, and by their checksum if the controller is taken to
// send checksums. Some controllers send any character in its place, so the program learns which kind it has. Monitor
// thread.

#include "line/ReceiveBuffer.h"

#include <deque>
#include <string>

namespace tarvin {

class IncomingCheck {
public:
    // Takes a message with data or a file number into account. `isRight` is IsRight of it, and `sendsChecksums` says
    // what the controller is taken for so far; returns what it is taken for from now on.
    bool Learn(const std::string& text, bool isRight, bool sendsChecksums);

    // Whether the checksum fits. The controller may count the bytes that do not print, or leave them out.
    static bool IsRight(const ReceivedMessage& message);

private:
    bool HasShownChecksums() const;

    std::deque<std::string> recent; // the texts of the last messages that were right; empty ones stand for wrong ones
    int wrongInARow = 0;
};

}
