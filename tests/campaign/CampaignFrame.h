#pragma once
// The messages of controller and program as bytes. Written for the campaign alone, so that it can judge the program:
// nothing here comes from the program's own frames. Any thread.
//
// A message is its text and one checksum character. On the line a carriage return ends it.

#include <string>
#include <string_view>

namespace tarvin::campaign {

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
inline constexpr std::string_view cannotGoOn = "AAAK03";
inline constexpr std::string_view downloadData = "AADA";
inline constexpr std::string_view downloadEnd = "AAEF";

}

inline constexpr char frameEnd = '\r';

// The checksum character of a message text: 32 to 126.
char ChecksumOf(std::string_view text);

// True if the message consists of printable characters and ends with the checksum of the text before it.
bool IsRight(std::string_view message);

// The bytes that the program keeps of a received message: 32 to 126.
std::string PrintableOf(std::string_view message);

// Bytes 32 to 126 as themselves, others as [xx].
std::string Readable(std::string_view bytes);

}
