#include "logging/ActivityLog.h"

#include "files/KelFile.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

// Names are right-aligned, so that the times of most lines stand below each other.
constexpr std::size_t nameColumns = 8;

std::string LineOf(const KelText& statusText, const KelText& programName) {
    const std::size_t missing = nameColumns - std::min(nameColumns, programName.size());
    const LocalTimeText now = LocalTimeNow();
    return ToUtf8(KelText(missing, u' ') + programName + u" " + now.time + u" " + now.date + u" " + statusText +
                  u"\r\n");
}

}

void ActivityLog::LogStatusChange(const std::filesystem::path& path, const KelText& statusText,
                                  const KelText& programName) {
    std::string text = ToUtf8(statusText);
    if (lastLogged.Is(text))
        return;
    std::string before = std::exchange(lastLogged.text, text);
    entries.push_back({path, std::move(text), LineOf(statusText, programName), std::move(before)});
}

bool ActivityLog::Flush() {
    if (entries.empty())
        return true;
    const std::string failedBefore = std::exchange(failedStatus, {});
    std::vector<Entry> failed;
    for (Entry& entry : std::exchange(entries, {})) {
        if (!Append(entry))
            failed.push_back(std::move(entry));
    }
    // Undone from the last line back: the same texts may be logged again, here and in the comms log.
    for (auto entry = failed.rbegin(); entry != failed.rend(); ++entry) {
        if (lastLogged.Is(entry->statusText))
            lastLogged.text = std::move(entry->lastLoggedBefore);
    }
    if (failed.empty())
        return true;
    failedStatus = std::move(failed.back().statusText);
    return failedStatus == failedBefore;
}

bool ActivityLog::Append(const Entry& entry) {
    KelFile file;
    return file.Open(entry.path, KelFile::Mode::AppendText) && file.Write(entry.line);
}

}
