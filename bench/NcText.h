#pragma once
// NC files for the measures, and the frames of their lines. The lines are the same on every run. Failures throw.

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace tarvin::bench {

// Write a new file of lines of 20 to 40 characters with CR LF ends: `lineCount` lines, or as many as make at least
// `byteCount` bytes.
void WriteNcLines(const std::filesystem::path& file, std::size_t lineCount);
void WriteNcBytes(const std::filesystem::path& file, std::size_t byteCount);

// The data frames of the first `mostLines` lines of such a file.
std::vector<std::string> ReadDataFrames(const std::filesystem::path& file, std::size_t mostLines);

// The frame of a message: its text, checksum and carriage return.
std::string FrameOf(std::string_view text);

}
