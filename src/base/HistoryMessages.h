#pragma once
// The texts of the history: reasons why it cannot be used, and its dialog. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Why the history cannot be read or written.
namespace historyReason {
// %1 is the number of transfers.
inline constexpr char16_t rowsLost[] =
    u"it is written again, but it lacks %1 transfers, for which the program had no memory";
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
inline constexpr char16_t caption[] = u"%1 - History";
inline constexpr char16_t machine[] = u"&Machine";
inline constexpr char16_t allMachines[] = u"All machines";
inline constexpr char16_t number[] = u"&Number";
inline constexpr char16_t numberHint[] = u"All, or such as 47*";
inline constexpr char16_t days[] = u"&Days";
inline constexpr char16_t today[] = u"Today";
inline constexpr char16_t lastDays[] = u"Last %1 days";
inline constexpr char16_t allDays[] = u"All";
inline constexpr char16_t outcome[] = u"O&utcome";
inline constexpr char16_t allOutcomes[] = u"All";
inline constexpr char16_t completed[] = u"Completed";
inline constexpr char16_t failed[] = u"Failed";
inline constexpr char16_t cancelled[] = u"Cancelled";
inline constexpr char16_t refused[] = u"Refused";
inline constexpr char16_t toMachine[] = u"To the machine";
inline constexpr char16_t fromMachine[] = u"From the machine";
inline constexpr char16_t table[] = u"Transfers";
inline constexpr char16_t endColumn[] = u"End";
inline constexpr char16_t machineColumn[] = u"Machine";
inline constexpr char16_t directionColumn[] = u"Direction";
inline constexpr char16_t numberColumn[] = u"Number";
inline constexpr char16_t sizeColumn[] = u"Bytes";
inline constexpr char16_t durationColumn[] = u"Duration";
inline constexpr char16_t outcomeColumn[] = u"Outcome";
inline constexpr char16_t reasonColumn[] = u"Reason";
inline constexpr char16_t reading[] = u"Reading...";
// %1 is a number of transfers.
inline constexpr char16_t shown[] = u"Transfers: %1";
inline constexpr char16_t newestShown[] = u"The newest %1 transfers. There are more: narrow the choice";
inline constexpr char16_t notRead[] = u"The history cannot be read: %1";
inline constexpr char16_t writing[] = u"Writing...";
// %1 is the number of transfers and %2 the file.
inline constexpr char16_t exported[] = u"Transfers written: %1, to %2";
inline constexpr char16_t notExported[] = u"%1 cannot be written: %2";
inline constexpr char16_t openFolder[] = u"&Open Folder";
inline constexpr char16_t exportCsv[] = u"&Export CSV...";
inline constexpr char16_t refresh[] = u"&Refresh";
inline constexpr char16_t close[] = u"&Close";
inline constexpr char16_t exportCaption[] = u"Export History";
inline constexpr char16_t csvFiles[] = u"Comma-separated values (*.csv)|*.csv";
inline constexpr char16_t csvFileName[] = u"history.csv";
}

}
