#include "app/ServiceOutput.h"

#include "base/Messages.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto longestFinish = 500ms;

// Printing thread only: localtime keeps its result in one place for the whole process.
std::string LocalTime(std::chrono::system_clock::time_point time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    const auto milliseconds =
        std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count() % 1000;
    char date[32] = "";
    if (const std::tm* local = std::localtime(&seconds))
        std::strftime(date, sizeof date, "%Y-%m-%d %H:%M:%S", local);
    char text[48] = "";
    std::snprintf(text, sizeof text, "%s.%03d", date, static_cast<int>(milliseconds));
    return text;
}

}

ServiceOutput::ServiceOutput() : shared(std::make_shared<Shared>()), printer([kept = shared] { Print(*kept); }) {}

bool ServiceOutput::Finish() {
    if (!printer.joinable())
        return true;
    const auto deadline = std::chrono::steady_clock::now() + longestFinish;
    bool isDone = false;
    {
        const MutexLock lock(shared->mutex);
        shared->isClosing = true;
        shared->changed.NotifyAll();
        while (!shared->isDone && shared->changed.WaitUntil(shared->mutex, deadline))
            continue;
        isDone = shared->isDone;
    }
    // A thread that hangs in a write to a full pipe cannot be ended.
    if (isDone)
        printer.join();
    else
        printer.detach();
    return isDone;
}

void ServiceOutput::Add(KelTextView text) {
    KelText printable(text);
    std::replace_if(
        printable.begin(), printable.end(), [](char16_t unit) { return unit < 0x20 || unit == 0x7F; }, u' ');
    Line line = {std::chrono::system_clock::now(), ToUtf8(printable)};
    const MutexLock lock(shared->mutex);
    if (shared->lines.size() >= capacity) {
        shared->lines.pop_front();
        ++shared->lostCount;
    }
    shared->lines.push_back(std::move(line));
    shared->changed.NotifyAll();
}

void ServiceOutput::AddNote(KelTextView note) {
    if (note.starts_with(u'\n'))
        note.remove_prefix(1);
    KelText line;
    for (const char16_t unit : note) {
        if (unit == u'\n')
            line += u" - ";
        else if (unit != u'\r')
            line += unit;
    }
    Add(line);
}

// Waits for a line. False if the output is closing and all lines have been printed.
bool ServiceOutput::TakeLine(Shared& shared, Line& line, std::size_t& lostCount) {
    const MutexLock lock(shared.mutex);
    while (!shared.isClosing && shared.lines.empty())
        shared.changed.Wait(shared.mutex);
    if (shared.lines.empty()) {
        shared.isDone = true;
        shared.changed.NotifyAll();
        return false;
    }
    lostCount = std::exchange(shared.lostCount, 0);
    line = std::move(shared.lines.front());
    shared.lines.pop_front();
    return true;
}

void ServiceOutput::Print(Shared& shared) {
    Line line;
    std::size_t lostCount = 0;
    while (TakeLine(shared, line, lostCount)) {
        const std::string time = LocalTime(line.time);
        if (lostCount > 0) {
            const KelText gap = Filled(text::service::linesNotPrinted, {ToText(static_cast<std::int64_t>(lostCount))});
            std::fprintf(stdout, "%s %s\n", time.c_str(), ToUtf8(gap).c_str());
        }
        std::fprintf(stdout, "%s %s\n", time.c_str(), line.text.c_str());
        std::fflush(stdout);
    }
}

}
