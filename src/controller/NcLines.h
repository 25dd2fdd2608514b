#pragma once
// An NC file as the lines that cross the line. Any thread.

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin::controller {

// Lines end with LF or CR LF; empty ones are left out, as the program leaves them out. None, with the reason in
// `error`, if a line holds a carriage return, which would end its message early.
std::optional<std::vector<std::string>> SplitNcLines(std::string_view content, std::string& error);

// The same for a file.
std::optional<std::vector<std::string>> ReadNcLines(const std::filesystem::path& path, std::string& error);

}
