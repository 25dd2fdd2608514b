#pragma once
// The choices that a user has for the settings, as the settings keep them. Settings may hold other values.

#include "base/SettingsMessages.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace tarvin {

inline constexpr std::array<KelTextView, 12> baudRateChoices = {
    u"110", u"150", u"300", u"600", u"1200", u"2400", u"4800", u"9600", u"19200", u"38400", u"57600", u"115200"};
inline constexpr std::array<KelTextView, 5> parityChoices = {u"None", u"Odd", u"Even", u"Mark", u"Space"};
inline constexpr std::array<KelTextView, 2> dataBitsChoices = {u"7", u"8"};
inline constexpr std::array<KelTextView, 3> stopBitsChoices = {u"1", u"1.5", u"2"};
inline constexpr std::array<KelTextView, 4> flowControlChoices = {u"Xon/Xoff", u"Hardware", u"None", u"Combined"};

// The entry of a value of DownloadSettings::incomingCheck has the value as its index.
inline constexpr std::array<NumberedText, 3> incomingCheckChoices = {text::choice::checkOff, text::choice::checkEnds,
                                                                     text::choice::checkWaits};
inline constexpr int mostReplacedFilesKept = 99;

// The entry of a value of DownloadSettings::controllerKind has the value as its index.
inline constexpr std::array<NumberedText, 2> controllerKindChoices = {text::choice::byNumber, text::choice::byHand};
inline constexpr int longestSilenceSeconds = 999;
inline constexpr int longestAttentionMinutes = 999;
inline constexpr int longestHistoryYears = 99;
inline constexpr int mostNewFilesPerHour = 99'999;

inline constexpr int longestCharacterDelayMilliseconds = 999;
inline constexpr int longestLineDelayMilliseconds = 999;
inline constexpr int longestTransmitDelaySeconds = 30;

// A character that may begin or end a transmission, and the name by which a user chooses it.
struct ControlCharacter {
    KelTextView name;
    std::uint8_t value;
};

// In the order of the list in the window. "SI " has the value 31, like "US ", and no entry has the value 15. Machines
// have been set up by these names for years: where "SI " is chosen, the controller expects the character that this
// choice has always sent.
inline constexpr std::array<ControlCharacter, 32> controlCharacters = {
    {{u"NUL", 0},  {u"SOH", 1},  {u"STX", 2},  {u"ETX", 3},  {u"EOT", 4},  {u"ENQ", 5},  {u"ACK", 6},  {u"BEL", 7},
     {u"BS ", 8},  {u"HT ", 9},  {u"LF ", 10}, {u"VT ", 11}, {u"FF ", 12}, {u"CR ", 13}, {u"SO ", 14}, {u"SI ", 31},
     {u"DLE", 16}, {u"DC1", 17}, {u"DC2", 18}, {u"DC3", 19}, {u"DC4", 20}, {u"NAK", 21}, {u"SYN", 22}, {u"ETB", 23},
     {u"CAN", 24}, {u"EM ", 25}, {u"SUB", 26}, {u"ESC", 27}, {u"FS ", 28}, {u"GS ", 29}, {u"RS ", 30}, {u"US ", 31}}};

// The index of the entry for a value: "US " for 31. None if no entry has the value.
constexpr std::optional<std::size_t> ControlCharacterEntry(std::uint8_t value) {
    for (std::size_t entry = controlCharacters.size(); entry-- > 0;) {
        if (controlCharacters[entry].value == value)
            return entry;
    }
    return std::nullopt;
}

}
