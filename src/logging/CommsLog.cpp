#include "logging/CommsLog.h"

#include <algorithm>
#include <cstdio>
#include <system_error>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto fileLook = 1s;

// "hh:mm:ss.ssssss (+d.dddddd) ", hours beyond 24 as they come.
std::string TimeStamp(double seconds, double sincePrevious) {
    // A whole minute that is a hair short of one in binary is a whole minute.
    const double minutes = seconds / 60;
    const int wholeMinutes = static_cast<int>(minutes < 0 ? minutes - 1e-9 : minutes + 1e-9);
    const double rest = std::max(seconds - 60.0 * wholeMinutes, 0.0);
    const int hours = wholeMinutes / 60;
    char text[80] = "";
    std::snprintf(text, sizeof text, "%02i:%02i:%09.6f (%+09.6f) ", hours, wholeMinutes - 60 * hours, rest,
                  sincePrevious);
    return text;
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
    if (!file.Open(path, KelFile::Mode::WriteText))
        return false;
    started = lastLookAtFile = clock.Now();
    previousSeconds = 0;
    return true;
}

void CommsLog::LogLine(std::string_view text, bool force) {
    if (!IsOpen() || text.empty() || (!force && lastLogged.Is(text)))
        return;
    lastLogged.text = text;
    const double seconds = std::chrono::duration<double>(clock.Now() - started).count();
    pending += TimeStamp(seconds, seconds - previousSeconds);
    pending += text;
    pending += "\r\n";
    previousSeconds = seconds;
}

bool CommsLog::Flush() {
    if (!IsOpen() || pending.empty())
        return true;
    const bool isWritten = !IsFileLost() && file.Write(std::exchange(pending, {}));
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
    return KeepBeside() && file.Open(filePath, KelFile::Mode::WriteText);
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
