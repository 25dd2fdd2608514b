#pragma once
// A message as it stands on the line: its text, one checksum character, a carriage return. Knows no message by name.
// Written apart from the program's own frames, so that the two check one another. Any thread.

#include <string>
#include <string_view>

namespace tarvin::controller {

inline constexpr char carriageReturn = '\r';

// The checksum character of a message text, 32 to 126. Each byte of the text counts as 0 to 255.
char ChecksumOf(std::string_view text);

// Replaces `frame` by the bytes that carry the text, and keeps its memory.
void BuildFrame(std::string_view text, std::string& frame);

// True if `frame`, which is all that stood before a carriage return, ends with the checksum of what precedes it.
bool HasRightChecksum(std::string_view frame);

// Bytes 0x20 to 0x7E as themselves, others as [xx].
std::string Readable(std::string_view bytes);

// The same between quotation marks, with "..." in place of what is beyond 80 bytes.
std::string Quoted(std::string_view bytes);

}
