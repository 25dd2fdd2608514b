#pragma once
// The messages of the controller's protocol as bytes: their codes, their checksum and their frame. Written without the
// program's own frames, so that program and controller check each other. Any thread.
//
// A frame is the message text, one checksum character and a carriage return. The controller's messages begin with "AB",
// the program's with "AA".

#include <string>
#include <string_view>

namespace tarvin::controller {

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

inline constexpr char frameEnd = '\r';

// The checksum character of a message text: 32 to 126. Each byte of the text counts as 0 to 255.
char MessageChecksum(std::string_view text);

// Replaces `frame` by the frame of the text. Reuses the memory of `frame`.
void BuildFrame(std::string_view text, std::string& frame);

// True if `frame`, without its carriage return, ends with the checksum character of the text before it.
bool HasRightChecksum(std::string_view frame);

// Bytes 0x20 to 0x7E as themselves, others as [xx].
std::string Readable(std::string_view bytes);

// Like Readable, between quotation marks. After 80 bytes "..." stands for the rest.
std::string Quoted(std::string_view bytes);

}
