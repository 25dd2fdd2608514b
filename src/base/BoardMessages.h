#pragma once
// The texts of the board, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text::board {

// What is happening. In some of them %1 is a duration such as 1:12, and %2 where it stands another one.
inline constexpr NumberedText ready = {20200, u"Ready"};
inline constexpr NumberedText preparing = {20201, u"Asked for by the machine"};
inline constexpr NumberedText sending = {20202, u"Being sent \u2192 machine"};
inline constexpr NumberedText receiving = {20203, u"Being received \u2190 machine"};
inline constexpr NumberedText heldFor = {20204, u"%1 for %2"};
inline constexpr NumberedText silentFor = {20205, u"Nothing from the machine for %1"};
// %1 is the port and %2 a duration.
inline constexpr NumberedText portGone = {20206, u"%1 is gone, tried each second, for %2"};
inline constexpr NumberedText portNotOpen = {20207, u"%1 cannot be opened, tried each second, for %2"};
// %1 is a time of day.
inline constexpr NumberedText sent = {20208, u"Sent to the machine at %1"};
inline constexpr NumberedText received = {20209, u"Received from the machine at %1"};
inline constexpr NumberedText cancelled = {20210, u"Cancelled at %1"};
inline constexpr NumberedText failed = {20211, u"FAILED at %1"};
// %1 is a line, %2 the number of lines and %3 a time of day.
inline constexpr NumberedText failedAtLine = {20212, u"FAILED behind line %1, at %3"};
inline constexpr NumberedText failedAtLineOf = {20213, u"FAILED at line %1 of %2, at %3"};
inline constexpr NumberedText refused = {20214, u"REFUSED at %1"};
inline constexpr char16_t noNumber[] = u"?";

// The facts: their captions and values.
inline constexpr NumberedText lines = {20215, u"Lines"};
inline constexpr NumberedText linesOf = {20216, u"%1 of %2"};
inline constexpr NumberedText linesAndBytes = {20217, u"%1, %2 bytes"};
inline constexpr NumberedText time = {20218, u"Time"};
inline constexpr NumberedText timeGone = {20219, u"%1 gone"};
inline constexpr NumberedText timeLeft = {20220, u"%1 gone, about %2 left"};
inline constexpr NumberedText speed = {20221, u"Speed"};
inline constexpr NumberedText speedAndRepeats = {20222, u"%1 lines/s, %2 repeats"};
inline constexpr NumberedText noSpeedAndRepeats = {20223, u"%2 repeats"};
inline constexpr NumberedText andDamaged = {20224, u"%1, %2 damaged"};
inline constexpr NumberedText why = {20225, u"Why"};
inline constexpr NumberedText notSaid = {20226, u"the program has no reason to tell"};
inline constexpr NumberedText machineHas = {20227, u"Machine has"};
inline constexpr NumberedText partDoNotCut = {20228, u"a part of it: do not cut"};
inline constexpr NumberedText nothingNew = {20229, u"nothing new"};
inline constexpr NumberedText stillAll = {20230, u"its program, as before"};
inline constexpr NumberedText whatToDo = {20231, u"What to do"};
inline constexpr NumberedText deleteAndAskAgain = {20232, u"delete it there, then ask again"};
inline constexpr NumberedText mendAndAskAgain = {20233, u"see to number and file, then ask again"};
inline constexpr NumberedText sendAgain = {20234, u"send it again at the machine"};

// The last transfers. %1 is the time, %2 the number, %3 the arrow and the rest.
inline constexpr char16_t recent[] = u"%1  %2 %3";
inline constexpr NumberedText recentDone = {20235, u"machine  %1 bytes  %2  done"};
inline constexpr NumberedText recentStoppedAt = {20236, u"machine  stopped at %1 %"};
inline constexpr NumberedText recentStoppedBehind = {20237, u"machine  stopped behind line %1"};
inline constexpr NumberedText recentCancelled = {20238, u"machine  cancelled"};
inline constexpr NumberedText recentRefused = {20239, u"machine  refused: %1"};
// %1 is a list of numbers.
inline constexpr NumberedText unseen = {20240, u"Failed and not seen: %1"};
inline constexpr NumberedText percent = {20241, u"%1 %"};
inline constexpr NumberedText bytes = {20242, u"%1 bytes"};

// Its buttons, for the hands of an operator.
inline constexpr NumberedText seen = {20243, u"See&n"};
inline constexpr NumberedText seenTip = {20244, u"Take this failure from the board. The history keeps it"};
inline constexpr NumberedText help = {20245, u"&What to Do"};
inline constexpr NumberedText helpTip = {20246, u"Open the help book at the page about failed transfers"};
inline constexpr NumberedText name = {20247, u"Board"};

}
