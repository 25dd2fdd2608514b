#pragma once
// The texts of the traffic view, and of the notes that the engine puts between the lines of the traffic. Written as in
// Messages.h.

#include "base/Messages.h"

namespace tarvin::text {

// Notes of the engine.
namespace trafficNote {
inline constexpr char16_t wrongChecksum[] = u"Damaged: the check character does not fit";
inline constexpr char16_t driverErrors[] = u"Damaged: the driver has reported wrong characters";
inline constexpr char16_t noKnownCode[] = u"Damaged: the message has no known code";
// %1 is the step that failed, and %2 the port and the reason.
inline constexpr char16_t portProblem[] = u"%1: %2";
}

// The find bar and the strip below the traffic.
namespace traffic {
inline constexpr char16_t find[] = u"Find";
inline constexpr char16_t findField[] = u"Find in the traffic";
inline constexpr char16_t previous[] = u"Previous";
inline constexpr char16_t next[] = u"Next";
inline constexpr char16_t closeFind[] = u"Close the find bar";
inline constexpr char16_t findTip[] = u"Enter finds the next place, Shift+Enter the one before, Escape closes";
inline constexpr char16_t notFound[] = u"Not found";
inline constexpr char16_t wrappedToStart[] = u"Goes on at the first line";
inline constexpr char16_t wrappedToEnd[] = u"Goes on at the last line";
inline constexpr char16_t followingIsOff[] = u"Following is off: new lines come below";
inline constexpr char16_t follow[] = u"Follow the End";
inline constexpr char16_t saveAs[] = u"Save Traffic As";
inline constexpr char16_t textFiles[] = u"Text files (*.txt)";
inline constexpr char16_t fileName[] = u"traffic.txt";
}

// The part of the menu that is about the traffic.
namespace trafficMenu {
inline constexpr char16_t find[] = u"&Find...\tCtrl+F";
inline constexpr char16_t findNext[] = u"Find &Next\tF3";
inline constexpr char16_t saveAs[] = u"Save &As...";
inline constexpr char16_t gutter[] = u"&Time of the Lines";
inline constexpr char16_t gutterOff[] = u"&Off";
inline constexpr char16_t timeOfDay[] = u"&Time of Day";
inline constexpr char16_t sinceLast[] = u"&Since the Line Before";
}

}
