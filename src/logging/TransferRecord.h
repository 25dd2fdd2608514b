#pragma once
// One transfer that has ended, or one request that was refused, as the board and the history show it. Any thread.

#include "base/KelText.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin {

enum class TransferDirection : std::int32_t { ToMachine = 0, FromMachine = 1 };

enum class TransferOutcome : std::int32_t {
    Completed = 0,
    Failed = 1,    // ended with errors, after it had begun
    Cancelled = 2, // by a user
    Refused = 3    // never begun: the request could not be met
};

struct TransferRecord {
    using Time = std::chrono::system_clock::time_point;

    KelText machine;
    // The number that the machine asked for, or the bare name of a file that was picked by hand. Empty if the request
    // arrived damaged.
    KelText number;
    KelText path;
    TransferDirection direction = TransferDirection::ToMachine;
    TransferOutcome outcome = TransferOutcome::Completed;
    KelText reason; // for users; empty if the outcome says it all
    // The request, or the begin by hand, and the end. A refused request has the same time twice.
    Time begin;
    Time end;
    std::int64_t byteCount = 0;
    std::int64_t bytesTotal = 0; // the size of the file; 0 if it is not known
    std::int64_t lineCount = 0;
    std::int64_t linesTotal = 0; // 0 if it is not known
    std::int64_t repeats = 0;
    std::int64_t damaged = 0;
    std::int64_t driverErrors = 0;
    // The SHA-256 of the first `byteCount` bytes of the file in lower-case hexadecimal digits: of what has been sent or
    // stored. Empty for a refused request, and if it was not known at the end of the transfer.
    std::string sha256;
    // A user has acknowledged the failure, or a completed transfer of the same number and direction has followed it.
    bool isSeen = false;

    bool IsAbout(KelTextView otherNumber, TransferDirection otherDirection) const {
        return number == otherNumber && direction == otherDirection;
    }
    bool IsUnseenFailure() const { return outcome == TransferOutcome::Failed && !isSeen; }
    bool operator==(const TransferRecord&) const = default;
};

}
