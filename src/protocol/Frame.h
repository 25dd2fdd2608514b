#pragma once
// The controller's messages as bytes: codes, checksum, frame, and what is taken out of a line received. Knows nothing
// of what is done with them. Pure functions, any thread.
//
// A frame is the message text, one checksum character and a carriage return. The controller's messages begin with "AB",
// ours with "AA".

#include <cstddef>
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
inline constexpr std::string_view cannotGoOn = "AAAK03"; // cannot write, or a data line that never arrives well
inline constexpr std::string_view downloadData = "AADA";
inline constexpr std::string_view downloadEnd = "AAEF";

}

inline constexpr char frameEnd = 13;
// The controller takes frames of up to 999 characters.
inline constexpr std::size_t longestDataLine = 993;

// Always 32 to 126.
char MessageChecksum(std::string_view text);

// `frame` receives the text, its checksum and the carriage return.
void BuildFrame(std::string_view text, std::string& frame);

// A code counts wherever it stands in the line: noise in front of it does not hide it.
inline bool HoldsCode(std::string_view line, std::string_view messageCode) {
    return line.find(messageCode) != std::string_view::npos;
}

// What stands between the first "ABAD" of the line and its last character, the controller's checksum, which is dropped
// unread: the controller repeats nothing, so that a refusal could only lose the line.
std::string_view DataPayload(std::string_view line);

// The file number of a request: the line without its code, the leading zeros after that, and its checksum character. In
// this order: of a number of zeros only, a checksum character "0" goes with the zeros.
std::string_view FileNumber(std::string_view line);

// Whether the number may name a file in a transfer folder: not one that leads out of it or to a device.
bool IsUsableFileNumber(std::string_view number);

}
