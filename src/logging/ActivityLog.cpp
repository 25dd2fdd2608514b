#include "logging/ActivityLog.h"

#include "base/Messages.h"
#include "logging/LogFile.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

// Names are right-aligned, so that the times of most lines stand below each other.
constexpr std::size_t nameColumns = 8;

std::string LineOf(const KelText& statusText, const KelText& programName, const LocalTimeText& at) {
    const std::size_t missing = nameColumns - std::min(nameColumns, programName.size());
    return ToUtf8(KelText(missing, u' ') + programName + u" " + at.time + u" " + at.date + u" " + statusText + u"\r\n");
}

}

void ActivityLog::Add(const ActivityLine& line) {
    std::string text = ToUtf8(line.statusText);
    if (!line.force && lastLogged.Is(text))
        return;
    lastLogged.text = std::move(text);
    // Another file is worth an attempt at once.
    if (path != line.path)
        isFailing = false;
    path = line.path;
    Keep(LineOf(line.statusText, line.programName, line.localTime));
}

void ActivityLog::AddNote(const KelText& note) {
    Keep(LineOf(note, {}, LocalTimeNow()));
}

void ActivityLog::Keep(std::string line) {
    lines.push_back(std::move(line));
    if (lines.size() > mostLines) {
        lines.pop_front();
        ++lostCount;
    }
}

Result<> ActivityLog::Flush(bool force) {
    const auto now = clock.Now();
    if (lines.empty() || (isFailing && !force && now - lastAttempt < logRetryPeriod))
        return {};
    lastAttempt = now;
    Result<> appended = Append();
    const bool wasFailing = std::exchange(isFailing, !appended);
    if (!appended)
        return wasFailing ? Result<>() : appended;
    lines.clear();
    lostCount = 0;
    return {};
}

Result<> ActivityLog::Append() const {
    std::string text = EndsWithinLine(path) ? "\r\n" : "";
    if (lostCount > 0)
        text += LineOf(Filled(text::activity::linesNotWritten, {ToText(static_cast<std::int64_t>(lostCount))}), {},
                       LocalTimeNow());
    for (const std::string& line : lines)
        text += line;
    KelFile file;
    if (const auto opened = file.Open(path, KelFile::Mode::AppendBytes); !opened)
        return opened;
    return AppendLines(file, path, text);
}

}
