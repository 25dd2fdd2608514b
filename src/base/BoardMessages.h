#pragma once
// The texts of the board, each once. Written as in Messages.h.

#include "base/Messages.h"

namespace tarvin::text::board {

// What is happening. In some of them %1 is a duration such as 1:12, and %2 where it stands another one.
inline constexpr char16_t ready[] = u"Ready";
inline constexpr char16_t preparing[] = u"Asked for by the machine";
inline constexpr char16_t sending[] = u"Being sent \u2192 machine";
inline constexpr char16_t receiving[] = u"Being received \u2190 machine";
inline constexpr char16_t heldFor[] = u"%1 for %2";
inline constexpr char16_t silentFor[] = u"Nothing from the machine for %1";
// %1 is the port and %2 a duration.
inline constexpr char16_t portGone[] = u"%1 is gone, tried each second, for %2";
inline constexpr char16_t portNotOpen[] = u"%1 cannot be opened, tried each second, for %2";
// %1 is a time of day.
inline constexpr char16_t sent[] = u"Sent to the machine at %1";
inline constexpr char16_t received[] = u"Received from the machine at %1";
inline constexpr char16_t cancelled[] = u"Cancelled at %1";
inline constexpr char16_t failed[] = u"FAILED at %1";
// %1 is a line, %2 the number of lines and %3 a time of day.
inline constexpr char16_t failedAtLine[] = u"FAILED behind line %1, at %3";
inline constexpr char16_t failedAtLineOf[] = u"FAILED at line %1 of %2, at %3";
inline constexpr char16_t refused[] = u"REFUSED at %1";
inline constexpr char16_t noNumber[] = u"?";

// The facts: their captions and values.
inline constexpr char16_t lines[] = u"Lines";
inline constexpr char16_t linesOf[] = u"%1 of %2";
inline constexpr char16_t linesAndBytes[] = u"%1, %2 bytes";
inline constexpr char16_t time[] = u"Time";
inline constexpr char16_t timeGone[] = u"%1 gone";
inline constexpr char16_t timeLeft[] = u"%1 gone, about %2 left";
inline constexpr char16_t speed[] = u"Speed";
inline constexpr char16_t speedAndRepeats[] = u"%1 lines/s, %2 repeats";
inline constexpr char16_t noSpeedAndRepeats[] = u"%2 repeats";
inline constexpr char16_t andDamaged[] = u"%1, %2 damaged";
inline constexpr char16_t why[] = u"Why";
inline constexpr char16_t notSaid[] = u"the program has no reason to tell";
inline constexpr char16_t machineHas[] = u"Machine has";
inline constexpr char16_t partDoNotCut[] = u"a part of it: do not cut";
inline constexpr char16_t nothingNew[] = u"nothing new";
inline constexpr char16_t stillAll[] = u"its program, as before";
inline constexpr char16_t whatToDo[] = u"What to do";
inline constexpr char16_t deleteAndAskAgain[] = u"delete it there, then ask again";
inline constexpr char16_t mendAndAskAgain[] = u"mend the file, then ask again";
inline constexpr char16_t sendAgain[] = u"send it again at the machine";

// The last transfers. %1 is the time, %2 the number, %3 the arrow and the rest.
inline constexpr char16_t recent[] = u"%1  %2 %3";
inline constexpr char16_t recentDone[] = u"machine  %1 bytes  %2  done";
inline constexpr char16_t recentStoppedAt[] = u"machine  stopped at %1 %";
inline constexpr char16_t recentStoppedBehind[] = u"machine  stopped behind line %1";
inline constexpr char16_t recentCancelled[] = u"machine  cancelled";
inline constexpr char16_t recentRefused[] = u"machine  refused: %1";
// %1 is a list of numbers.
inline constexpr char16_t unseen[] = u"Failed and not seen: %1";
inline constexpr char16_t percent[] = u"%1 %";
inline constexpr char16_t bytes[] = u"%1 bytes";

// Its buttons, for the hands of an operator.
inline constexpr char16_t seen[] = u"See&n";
inline constexpr char16_t seenTip[] = u"Take this failure from the board. The history keeps it";
inline constexpr char16_t help[] = u"&What to Do";
inline constexpr char16_t helpTip[] = u"Open the help book at the page about failed transfers";
inline constexpr char16_t name[] = u"Board";

}
