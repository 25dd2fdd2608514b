#include "logging/CommsLog.h"

#include "base/Messages.h"
#include "logging/LogFile.h"

#include <algorithm>
#include <cassert>
#include <charconv>
#include <iterator>
#include <system_error>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

// The time between two looks at the file's path.
constexpr auto fileLookInterval = 1s;

// Waiting text that is worth a write. A slow disk, such as a network drive, takes as long for a few bytes as for many.
constexpr std::size_t blockSize = 1024 * 1024;

// True if the file is missing, is empty or begins with the time stamp of a comms log.
bool IsCommsLog(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found)
        return true;
    NativeFile log;
    if (!log.Open(path, NativeFile::Access::Read))
        return false;
    char bytes[48] = "";
    const auto count = log.Read(bytes, sizeof bytes);
    if (!count)
        return false;
    std::string_view head(bytes, *count);
    if (head.empty())
        return true;
    // A run of more than four days counts its hours with three digits and more.
    const std::size_t hourDigits = std::min(head.find_first_not_of("0123456789"), head.size());
    constexpr std::string_view shape = ":00:00.000000 (+";
    head.remove_prefix(hourDigits);
    return hourDigits >= 2 && head.size() >= shape.size() &&
           std::equal(shape.begin(), shape.end(), head.begin(), [](char expected, char actual) {
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
    // Rounded to the nearest microsecond.
    const std::int64_t microseconds = (nanoseconds + 500) / 1000;
    AppendDigits(text, microseconds / 1'000'000, leastDigits);
    text.push_back('.');
    AppendDigits(text, microseconds % 1'000'000, 6);
}

// "hh:mm:ss.ssssss (+d.dddddd) ", with hours that go on beyond 24. Made digit by digit: every line of a transfer needs
// two times, and a formatted print takes longer than the rest of the logging.
void AppendTimeStamp(std::string& text, std::int64_t nanoseconds, std::int64_t sincePrevious) {
    // Up to 60 ns short of a whole minute count as the whole minute.
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

Result<> CommsLog::Open(const std::filesystem::path& path) {
    sizeLimit = sizeBefore = 0;
    return Begin(path, KelFile::Mode::WriteBytes);
}

Result<> CommsLog::OpenRolling(const std::filesystem::path& path, std::uint64_t newSizeLimit) {
    assert(newSizeLimit > 0);
    if (!IsCommsLog(path))
        return Error{text::logReason::notCommsLog};
    sizeLimit = newSizeLimit;
    if (const auto begun = Begin(path, KelFile::Mode::AppendBytes); !begun)
        return begun;
    return OpenLocked();
}

Result<> CommsLog::Begin(const std::filesystem::path& path, KelFile::Mode mode) {
    file.Close();
    pending.clear();
    filePath = path;
    hasRolledOver = false;
    started = lastLookAtFile = clock.Now();
    previousTime = 0;
    return file.Open(path, mode);
}

// Opens the file if it is closed. Locks a rolling one, so that no other running program rolls it over.
Result<> CommsLog::OpenLocked() {
    Result<> result = file.Open(filePath, KelFile::Mode::AppendBytes);
    if (result && sizeLimit > 0) {
        if (const auto locked = file.Lock(); !locked)
            result = Error{Filled(text::logReason::heldByOther, {locked.Reason().text})};
    }
    if (!result) {
        file.Close();
        return result;
    }
    sizeBefore = file.Size().ValueOr(0);
    if (EndsWithinLine(filePath))
        pending = "\r\n";
    return {};
}

Result<> CommsLog::Resume() {
    assert(!IsOpen() && !filePath.empty());
    if (!IsCommsLog(filePath))
        return Error{text::logReason::notCommsLog};
    if (const auto opened = OpenLocked(); !opened)
        return opened;
    lastLookAtFile = clock.Now();
    return {};
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

bool CommsLog::IsFlushDue() const {
    return pending.size() >= blockSize ||
           (sizeLimit > 0 && sizeBefore + file.BytesWritten() + pending.size() >= sizeLimit && !pending.empty());
}

Result<> CommsLog::Flush() {
    if (!IsOpen() || pending.empty())
        return {};
    Result<> result = WritePending();
    if (result && sizeLimit > 0 && sizeBefore + file.BytesWritten() >= sizeLimit)
        result = RollOver();
    if (!result)
        file.Close();
    return result;
}

Result<> CommsLog::WritePending() {
    const bool isLost = IsFileLost();
    const Result<> result = isLost ? Error{text::logReason::lostFile} : AppendLines(file, filePath, pending);
    // A disk that is nearly full has room for some of the lines.
    std::string_view rest = pending;
    while (!result && !isLost && !rest.empty()) {
        const std::size_t length = std::min(rest.find('\n'), rest.size() - 1) + 1;
        if (!AppendLines(file, filePath, rest.substr(0, length)))
            break;
        rest.remove_prefix(length);
    }
    pending.clear();
    return result;
}

Result<> CommsLog::Close() {
    const Result<> flushed = Flush();
    file.Close();
    return flushed;
}

Result<> CommsLog::RollOver() {
    std::filesystem::path kept = filePath;
    kept += ".1";
    std::error_code error;
    // The file is renamed while it is still locked. Otherwise another program could take it over in between.
    std::filesystem::rename(filePath, kept, error);
    file.Close();
    hasRolledOver = true;
    if (error)
        return Error{FromUtf8(error.message())};
    return OpenLocked();
}

// A file that was deleted or moved still takes bytes, but its path no longer leads to them.
bool CommsLog::IsFileLost() {
    const auto now = clock.Now();
    // The look costs system calls, so not every flush makes one.
    if (now - lastLookAtFile < fileLookInterval)
        return false;
    lastLookAtFile = now;
    return !file.IsAt(filePath);
}

}
