#pragma once
// NC text to be sent: made, written and read back. The same lines on every run.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tarvin::bench {

// Replaces the file by lines of 20 to 40 characters, each ended by CR LF: by `lineCount` lines, or by as many as reach
// `byteCount`. Throws if the file cannot be written.
void WriteNcLines(const std::filesystem::path& file, std::size_t lineCount);
void WriteNcBytes(const std::filesystem::path& file, std::size_t byteCount);

// The frames in which the lines of such a file go out, without the end of the download. `mostLines` bounds them.
std::vector<std::string> ReadDataFrames(const std::filesystem::path& file, std::size_t mostLines);

// The frame of a message text.
std::string FrameOf(std::string_view text);

}
