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

}
