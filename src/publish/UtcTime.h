#pragma once
// Times in files for other programs: UTC as "2026-11-22T10:20:31.123Z" (ISO 8601). Any thread.

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarvin {

using SystemTime = std::chrono::system_clock::time_point;

// A time before 1970 becomes 1970, one after 2200 becomes 2200.
std::string ToUtcText(SystemTime time);
// None if the text is no such time from 1970 to 2200.
std::optional<SystemTime> FromUtcText(std::string_view text);

}
