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
inline constexpr NumberedText find = {20800, u"Find"};
inline constexpr NumberedText findField = {20801, u"Find in the traffic"};
inline constexpr NumberedText previous = {20802, u"Previous"};
inline constexpr NumberedText next = {20803, u"Next"};
inline constexpr NumberedText closeFind = {20804, u"Close the find bar"};
inline constexpr NumberedText findTip = {20805,
                                         u"Enter finds the next place, Shift+Enter the one before, Escape closes"};
inline constexpr NumberedText notFound = {20806, u"Not found"};
inline constexpr NumberedText wrappedToStart = {20807, u"Goes on at the first line"};
inline constexpr NumberedText wrappedToEnd = {20808, u"Goes on at the last line"};
inline constexpr NumberedText followingIsOff = {20809, u"Following is off: new lines come below"};
inline constexpr NumberedText follow = {20810, u"Follow the End"};
inline constexpr NumberedText saveAs = {20811, u"Save Traffic As"};
inline constexpr NumberedText textFiles = {20812, u"Text files (*.txt)"};
inline constexpr char16_t fileName[] = u"traffic.txt";
}

// The part of the menu that is about the traffic.
namespace trafficMenu {
inline constexpr NumberedText find = {20813, u"&Find...\tCtrl+F"};
inline constexpr NumberedText findNext = {20814, u"Find &Next\tF3"};
inline constexpr NumberedText saveAs = {20815, u"Save &As..."};
inline constexpr NumberedText gutter = {20816, u"&Time of the Lines"};
inline constexpr NumberedText gutterOff = {20817, u"&Off"};
inline constexpr NumberedText timeOfDay = {20818, u"&Time of Day"};
inline constexpr NumberedText sinceLast = {20819, u"&Since the Line Before"};
}

}
