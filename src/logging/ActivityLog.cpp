#include "logging/ActivityLog.h"

#include "framework/KelFile.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

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
    bool isComplaintDue = false;
    for (Entry& entry : std::exchange(entries, {})) {
        if (Append(entry)) {
            complainedOf.clear();
            continue;
        }
        // It was not logged after all: it is tried again, and the comms log may say it.
        if (lastLogged.Is(entry.statusText))
            lastLogged.text = std::move(entry.lastLoggedBefore);
        isComplaintDue = isComplaintDue || complainedOf != entry.statusText;
        complainedOf = std::move(entry.statusText);
    }
    return !isComplaintDue;
}

bool ActivityLog::Append(const Entry& entry) {
    KelFile file;
    return file.Open(entry.path, KelFile::Mode::AppendText) && file.Write(entry.line);
}

}
