#pragma once
// The names by which a user picks the characters that begin and end a transmission. Pure, any thread.

#include "base/KelText.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>

namespace tarvin {

struct ControlCharacter {
    KelTextView name;
    std::uint8_t value;
};

// In the order in which they are offered. "SI " carries 31, as "US " does, and no entry carries 15: machines have been
// set up by these names for years, and a machine for which somebody picked "SI " expects what that has always sent.
inline constexpr std::array<ControlCharacter, 32> controlCharacters = {
    {{u"NUL", 0},  {u"SOH", 1},  {u"STX", 2},  {u"ETX", 3},  {u"EOT", 4},  {u"ENQ", 5},  {u"ACK", 6},  {u"BEL", 7},
     {u"BS ", 8},  {u"HT ", 9},  {u"LF ", 10}, {u"VT ", 11}, {u"FF ", 12}, {u"CR ", 13}, {u"SO ", 14}, {u"SI ", 31},
     {u"DLE", 16}, {u"DC1", 17}, {u"DC2", 18}, {u"DC3", 19}, {u"DC4", 20}, {u"NAK", 21}, {u"SYN", 22}, {u"ETB", 23},
     {u"CAN", 24}, {u"EM ", 25}, {u"SUB", 26}, {u"ESC", 27}, {u"FS ", 28}, {u"GS ", 29}, {u"RS ", 30}, {u"US ", 31}}};

// The entry that stands for a value, the one with the true name where there are two; none if no entry carries it.
constexpr std::optional<std::size_t> ControlCharacterEntry(std::uint8_t value) {
    for (std::size_t entry = controlCharacters.size(); entry-- > 0;) {
        if (controlCharacters[entry].value == value)
            return entry;
    }
    return std::nullopt;
}

}
