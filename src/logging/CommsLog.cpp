#include "logging/CommsLog.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto fileLook = 1s;

constexpr std::int64_t nanosecondsPerMinute = 60'000'000'000;

void AppendDigits(std::string& text, std::int64_t number, int leastDigits) {
    char digits[24] = "";
    const auto end = std::to_chars(digits, std::end(digits), number).ptr;
    for (auto missing = leastDigits - (end - digits); missing > 0; --missing)
        text.push_back('0');
    text.append(digits, end);
}

// Seconds with six decimals.
void AppendSeconds(std::string& text, std::int64_t nanoseconds, int leastDigits) {
    const std::int64_t microseconds = (nanoseconds + 500) / 1000;
    AppendDigits(text, microseconds / 1'000'000, leastDigits);
    text.push_back('.');
    AppendDigits(text, microseconds % 1'000'000, 6);
}

// "hh:mm:ss.ssssss (+d.dddddd) ", hours beyond 24 as they come. By hand: it is done twice for every line of a transfer,
// and a formatted print takes longer than all else that logging costs.
void AppendTimeStamp(std::string& text, std::int64_t nanoseconds, std::int64_t sincePrevious) {
    // What is a hair short of a whole minute is a whole minute.
    const std::int64_t minutes = (nanoseconds + 60) / nanosecondsPerMinute;
    AppendDigits(text, minutes / 60, 2);
    text.push_back(':');
    AppendDigits(text, minutes % 60, 2);
    text.push_back(':');
    AppendSeconds(text, std::max<std::int64_t>(nanoseconds - minutes * nanosecondsPerMinute, 0), 2);
    text += " (+";
    AppendSeconds(text, sincePrevious, 1);
    text += ") ";
}

}

bool CommsLog::Open(const std::filesystem::path& path) {
    sizeLimit = 0;
    return Begin(path);
}

bool CommsLog::OpenRolling(const std::filesystem::path& path, std::uint64_t largestSize) {
    sizeLimit = largestSize;
    file.Close();
    filePath = path;
    return KeepBeside() && Begin(path);
}

bool CommsLog::Begin(const std::filesystem::path& path) {
    file.Close();
    pending.clear();
    filePath = path;
    if (!file.Open(path, KelFile::Mode::WriteBytes))
        return false;
    started = lastLookAtFile = clock.Now();
    previousTime = 0;
    return true;
}

void CommsLog::LogLine(std::string_view text, bool force) {
    if (!IsOpen() || text.empty() || (!force && lastLogged.Is(text)))
        return;
    lastLogged.text = text;
    const std::int64_t time = std::chrono::nanoseconds(clock.Now() - started).count();
    AppendTimeStamp(pending, time, time - previousTime);
    pending += text;
    pending += "\r\n";
    previousTime = time;
}

bool CommsLog::Flush() {
    if (!IsOpen() || pending.empty())
        return true;
    const bool isWritten = !IsFileLost() && file.Write(pending);
    pending.clear();
    if (isWritten && (sizeLimit == 0 || file.BytesWritten() < sizeLimit || RollOver()))
        return true;
    file.Close();
    return false;
}

bool CommsLog::Close() {
    const bool isWritten = Flush();
    file.Close();
    return isWritten;
}

bool CommsLog::RollOver() {
    file.Close();
    return KeepBeside() && file.Open(filePath, KelFile::Mode::WriteBytes);
}

bool CommsLog::KeepBeside() const {
    std::filesystem::path kept = filePath;
    kept += ".1";
    std::error_code error;
    std::filesystem::rename(filePath, kept, error);
    return !error || error == std::errc::no_such_file_or_directory;
}

// A file that was deleted, with its folder or alone, goes on taking bytes on some systems, and nobody can read them.
bool CommsLog::IsFileLost() {
    const auto now = clock.Now();
    if (now - lastLookAtFile < fileLook)
        return false;
    lastLookAtFile = now;
    std::error_code ignored;
    return !std::filesystem::exists(filePath, ignored);
}

}
