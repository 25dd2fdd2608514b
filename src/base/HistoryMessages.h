#pragma once
// The texts of the history: reasons why it cannot be used, and its dialog. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Why the history cannot be read or written.
namespace historyReason {
// %1 is the number of transfers.
inline constexpr char16_t rowsLost[] =
    u"it is written again, but it lacks %1 transfers, for which the program had no memory";
// %1 is the number of transfers and %2 why they cannot be written.
inline constexpr char16_t rowsNotKept[] = u"the program has ended, and %1 transfers are lost to the history: %2";
inline constexpr char16_t newer[] = u"a newer version of this program has made it";
inline constexpr char16_t foreign[] = u"it is no history of this program";
inline constexpr char16_t damaged[] = u"it is damaged (%1)";
inline constexpr char16_t locked[] = u"another program holds it (%1)";
inline constexpr char16_t full[] = u"the disk is full (%1)";
inline constexpr char16_t readOnly[] = u"this user may not write it (%1)";
inline constexpr char16_t missing[] = u"there is no history yet";
inline constexpr char16_t changing[] = u"other programs write it without a pause";
}

// The dialog of the history.
namespace historyDialog {
inline constexpr NumberedText caption = {21400, u"%1 - History"};
inline constexpr NumberedText machine = {21401, u"&Machine"};
inline constexpr NumberedText allMachines = {21402, u"All machines"};
inline constexpr NumberedText number = {21403, u"&Number"};
inline constexpr NumberedText numberHint = {21404, u"All, or such as 47*"};
inline constexpr NumberedText days = {21405, u"&Days"};
inline constexpr NumberedText today = {21406, u"Today"};
inline constexpr NumberedText lastDays = {21407, u"Last %1 days"};
inline constexpr NumberedText allDays = {21408, u"All"};
inline constexpr NumberedText outcome = {21409, u"O&utcome"};
inline constexpr NumberedText allOutcomes = {21410, u"All"};
inline constexpr NumberedText completed = {21411, u"Completed"};
inline constexpr NumberedText failed = {21412, u"Failed"};
inline constexpr NumberedText cancelled = {21413, u"Cancelled"};
inline constexpr NumberedText refused = {21414, u"Refused"};
inline constexpr NumberedText toMachine = {21415, u"To the machine"};
inline constexpr NumberedText fromMachine = {21416, u"From the machine"};
inline constexpr NumberedText table = {21417, u"Transfers"};
inline constexpr NumberedText endColumn = {21418, u"End"};
inline constexpr NumberedText machineColumn = {21419, u"Machine"};
inline constexpr NumberedText directionColumn = {21420, u"Direction"};
inline constexpr NumberedText numberColumn = {21421, u"Number"};
inline constexpr NumberedText sizeColumn = {21422, u"Bytes"};
inline constexpr NumberedText durationColumn = {21423, u"Duration"};
inline constexpr NumberedText outcomeColumn = {21424, u"Outcome"};
inline constexpr NumberedText reasonColumn = {21425, u"Reason"};
inline constexpr NumberedText reading = {21426, u"Reading..."};
// %1 is a number of transfers.
inline constexpr NumberedText shown = {21427, u"Transfers: %1"};
inline constexpr NumberedText newestShown = {21428, u"The newest %1 transfers. There are more: narrow the choice"};
inline constexpr NumberedText notRead = {21429, u"The history cannot be read: %1"};
inline constexpr NumberedText writing = {21430, u"Writing..."};
// %1 is the number of transfers and %2 the file.
inline constexpr NumberedText exported = {21431, u"Transfers written: %1, to %2"};
inline constexpr NumberedText notExported = {21432, u"%1 cannot be written: %2"};
inline constexpr NumberedText openFolder = {21433, u"&Open Folder"};
inline constexpr NumberedText exportCsv = {21434, u"&Export CSV..."};
inline constexpr NumberedText refresh = {21435, u"&Refresh"};
inline constexpr NumberedText close = {21436, u"&Close"};
inline constexpr NumberedText exportCaption = {21437, u"Export History"};
inline constexpr NumberedText csvFiles = {21438, u"Comma-separated values (*.csv)|*.csv"};
inline constexpr char16_t csvFileName[] = u"history.csv";
}

}
