#pragma once
// Judges one transfer: compares the bytes of both sides, and tells which side knows of an error and what has caused a
// difference that both take for success. Any thread.

#include "campaign/BadLine.h"
#include "campaign/CampaignController.h"
#include "campaign/ProgramUnderTest.h"

#include <optional>
#include <string>
#include <vector>

namespace tarvin::campaign {

enum class TransferKind { Upload, Download };

enum class Verdict {
    Identical, // and neither side knows of an error
    BothKnow,  // both sides know of an error
    ControllerAloneKnows,
    ProgramAloneKnows,
    SilentDifference, // the content differs and neither side knows
};

// The cause of a silent difference, and whether the receiver could have noticed it.
enum class Cause {
    DataChecksum,    // a damaged data line was taken, although its checksum was wrong
    RequestChecksum, // a damaged file number was taken, although the checksum of its request was wrong
    RightChecksum,   // the damage left a right checksum, or the controller sends none: nothing could tell
    Repeat,          // the controller sent its message again, or asked again, and the program took that for a new one
    EarlierAttempt,  // the file begins with lines of an attempt that the controller had given up
    OutOfStep,       // an answer came late, so later answers stood for the wrong messages
    Unknown,
};

// All that is known of one transfer after its end.
struct TransferRecord {
    TransferKind kind = TransferKind::Upload;
    std::string number;                // as the controller sends it
    std::vector<std::string> expected; // the lines that should have arrived
    std::vector<std::string> actual;   // the lines that have: on the disk, or at the controller
    bool isWhole = false;              // byte for byte
    bool isOlderWhole = false;         // of an upload: the older program still lies under the name
    bool isMute = false;               // the program does not answer a link test after the transfer
    int damageCount = 0;
    CampaignController::Outcome controller;
    ProgramWord program = ProgramWord::None;
    std::vector<LineEvent> traffic;
    bool sendsChecksums = true;
};

struct Judgement {
    Verdict verdict = Verdict::Identical;
    std::optional<Cause> cause; // of a silent difference
    std::string detail;         // the first difference, in words
};

Judgement Judge(const TransferRecord& record);

}
