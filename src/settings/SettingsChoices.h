#pragma once
// What a user is offered for the line, as the texts that the settings keep. Settings may hold others.

#include "base/KelText.h"

#include <array>

namespace tarvin {

inline constexpr std::array<KelTextView, 12> baudRateChoices = {
    u"110", u"150", u"300", u"600", u"1200", u"2400", u"4800", u"9600", u"19200", u"38400", u"57600", u"115200"};
inline constexpr std::array<KelTextView, 5> parityChoices = {u"None", u"Odd", u"Even", u"Mark", u"Space"};
inline constexpr std::array<KelTextView, 2> dataBitsChoices = {u"7", u"8"};
inline constexpr std::array<KelTextView, 3> stopBitsChoices = {u"1", u"1.5", u"2"};
inline constexpr std::array<KelTextView, 4> flowControlChoices = {u"Xon/Xoff", u"Hardware", u"None", u"Combined"};

inline constexpr int longestCharacterDelayMilliseconds = 999;
inline constexpr int longestLineDelayMilliseconds = 999;
inline constexpr int longestTransmitDelaySeconds = 30;

}
