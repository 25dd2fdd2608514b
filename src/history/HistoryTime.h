#pragma once
// Times of the history as people read them: in the local time of this computer. Any thread.

#include "logging/TransferRecord.h"

#include <ctime>
#include <optional>
#include <string>

namespace tarvin {

// The local time of the system's time zone. One source for each system.
std::tm LocalTimeOf(std::time_t time);

// As "2026-11-22T06:36:25.120+01:00", for other programs.
std::string ToIsoText(TransferRecord::Time time);
// As "2026-11-22 06:36:25", for people.
std::string ToLocalText(TransferRecord::Time time);
// As "2026-11-22".
std::string ToLocalDay(TransferRecord::Time time);

// The first moment of the local day, which is given as "2026-11-22", `daysLater` days later. None if there is no such
// day from 1970 to 2200.
std::optional<TransferRecord::Time> StartOfDay(KelTextView day, int daysLater = 0);
// The first moment of the local day of `now`, `daysBefore` days before.
TransferRecord::Time StartOfDayBefore(TransferRecord::Time now, int daysBefore);

}
