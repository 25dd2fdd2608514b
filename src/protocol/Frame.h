#pragma once
// The messages of the controller's language as bytes: codes, checksum and frame, and the parts of a received message.
// Any thread.
//
// A frame is the message text, one checksum character and a carriage return. The controller's messages begin with "AB",
// ours with "AA".

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>

namespace tarvin {

namespace code {

inline constexpr std::string_view linkTest = "ABTS";
inline constexpr std::string_view uploadRequest = "ABST";
inline constexpr std::string_view downloadRequest = "ABSE";
inline constexpr std::string_view uploadData = "ABAD";
inline constexpr std::string_view uploadEnd = "ABEF";
inline constexpr std::string_view dataGood = "ABAK";
inline constexpr std::string_view dataBad = "ABNK";

inline constexpr std::string_view linkTestAnswer = "AATS";
inline constexpr std::string_view acknowledge = "AAAK";
inline constexpr std::string_view cannotRead = "AAAK01";
inline constexpr std::string_view cannotGoOn = "AAAK03"; // the file cannot be written, or a data line has failed
inline constexpr std::string_view downloadData = "AADA";
inline constexpr std::string_view downloadEnd = "AAEF";

}

inline constexpr char frameEnd = 13;
// The controller takes frames of up to 999 characters.
inline constexpr std::size_t longestDataLine = 993;

// The checksum character of a message text, 32 to 126.
char MessageChecksum(std::string_view text);

// Puts the text, its checksum and the carriage return into `frame`.
void BuildFrame(std::string_view text, std::string& frame);

// A code counts wherever it stands in the message: noise before it does not hide it.
inline bool HoldsCode(std::string_view message, std::string_view code) {
    return message.find(code) != std::string_view::npos;
}

bool HoldsAnyCode(std::string_view message, std::initializer_list<std::string_view> codes);

// Whether the message holds any code of the controller.
bool HoldsKnownCode(std::string_view message);

// The characters between the first "ABAD" of the message and its last character, which is the controller's checksum.
std::string_view DataPayload(std::string_view message);

// The file number of a request: the message without its first four characters, then without leading zeros, then without
// its checksum character. In this order, so a checksum "0" behind zeros goes with the zeros.
std::string_view FileNumber(std::string_view message);

}
