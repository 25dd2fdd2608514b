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

// Whether the file is one of these logs, or is yet to be one. By its first line, which has its time in front.
bool IsCommsLog(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        return true;
    NativeFile log;
    if (!log.Open(path, NativeFile::Access::Read))
        return false;
    constexpr std::string_view shape = "00:00:00.000000 (+";
    char head[shape.size()] = "";
    const auto count = log.Read(head, shape.size());
    if (!count || (*count > 0 && *count < shape.size()))
        return false;
    return *count == 0 || std::equal(shape.begin(), shape.end(), head, [](char expected, char actual) {
        return expected == '0' ? actual >= '0' && actual <= '9' : actual == expected;
    });
}

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
    sizeLimit = sizeBefore = 0;
    return Begin(path, KelFile::Mode::WriteBytes);
}

bool CommsLog::OpenRolling(const std::filesystem::path& path, std::uint64_t largestSize) {
    sizeLimit = largestSize;
    return IsCommsLog(path) && Begin(path, KelFile::Mode::AppendBytes) && OpenOwn();
}

bool CommsLog::Begin(const std::filesystem::path& path, KelFile::Mode mode) {
    file.Close();
    pending.clear();
    filePath = path;
    hasRolledOver = false;
    started = lastLookAtFile = clock.Now();
    previousTime = 0;
    return file.Open(path, mode);
}

// The rolling file, opened or not: nobody else may move it away.
bool CommsLog::OpenOwn() {
    if (file.Open(filePath, KelFile::Mode::AppendBytes) && file.Lock()) {
        sizeBefore = file.Size().value_or(0);
        return true;
    }
    file.Close();
    return false;
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
    if (isWritten && (sizeLimit == 0 || sizeBefore + file.BytesWritten() < sizeLimit || RollOver()))
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
    std::filesystem::path kept = filePath;
    kept += ".1";
    std::error_code error;
    // Before the file is given up: as long as it is locked it is nobody else's.
    std::filesystem::rename(filePath, kept, error);
    file.Close();
    hasRolledOver = true;
    return !error && OpenOwn();
}

// A file that was deleted or moved, with its folder or alone, goes on taking bytes, and nobody finds them.
bool CommsLog::IsFileLost() {
    const auto now = clock.Now();
    if (now - lastLookAtFile < fileLook)
        return false;
    lastLookAtFile = now;
    return !file.IsAt(filePath);
}

}
