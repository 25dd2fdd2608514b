#pragma once
// What one program publishes about its machine, and its form in a file. docs/status.md describes the form. Any thread.

#include "base/Result.h"
#include "engine/EngineSnapshot.h"
#include "files/MachineLock.h"
#include "publish/UtcTime.h"
#include "settings/DownloadSettings.h"

#include <string>
#include <string_view>

namespace tarvin {

// The number of the form. A reader refuses every other one.
inline constexpr std::int64_t statusFormVersion = 1;

struct PublishedStatus {
    KelText machine;
    KelText installation;
    // Its raise address is not published.
    MachineHolder program;
    KelText processStart; // see ProcessStartMark
    KelText programVersion;
    SystemTime startedAt;
    SystemTime changedAt; // when this was published
    // Port, port mode, handshakes, folders, extension, controller kind and attention limit. The others are not
    // published.
    DownloadSettings settings;
    // A reader's snapshot has neither buttons nor an end dialog.
    EngineSnapshot snapshot;
};

// The present, by both clocks. The times of a snapshot are those of the engine's clock, those of a file are UTC.
struct Present {
    Clock::TimePoint steady;
    SystemTime system;
};

Present PresentOf(const Clock& clock);

// A document of at most longestStatusFile bytes: the oldest transfers are left out if it would be longer, and each text
// ends after 4096 units.
std::string ToJson(const PublishedStatus& status, const Present& present);

// Fails if the document is no such status: the reason says what is wrong. Accepts any content that is safe to show;
// members that it does not know count for nothing.
Result<PublishedStatus> FromJson(std::string_view document, const Present& present);

// The percentage of a transfer whose size is known: 0 to 99. Requires progress.bytesTotal > 0.
std::int64_t PercentOf(const TransferProgress& progress);

// Whether the program that has published this still runs. Unknown for a program of another computer.
enum class ProgramState { Running, Ended, Unknown };
ProgramState StateOfProgram(const PublishedStatus& status);

}
