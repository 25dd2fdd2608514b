#include "app/ServiceOutput.h"

#include "base/Messages.h"

#include <algorithm>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto longestFinish = 500ms;

}

ServiceOutput::ServiceOutput(Printer printLine)
    : shared(std::make_shared<Shared>(std::move(printLine))), printer([kept = shared] { Print(*kept); }) {}

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

void ServiceOutput::Add(KelTextView text, LineKind kind) {
    KelText printable(text);
    std::replace_if(
        printable.begin(), printable.end(), [](char16_t unit) { return unit < 0x20 || unit == 0x7F; }, u' ');
    ServiceLine line = {std::chrono::system_clock::now(), ToUtf8(printable), kind};
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
    Add(line, LineKind::Warning);
}

// Waits for a line. False if the output is closing and all lines have been printed.
bool ServiceOutput::TakeLine(Shared& shared, ServiceLine& line, std::size_t& lostCount) {
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
    ServiceLine line;
    std::size_t lostCount = 0;
    while (TakeLine(shared, line, lostCount)) {
        if (lostCount > 0) {
            const KelText gap = Filled(text::service::linesNotPrinted, {ToText(static_cast<std::int64_t>(lostCount))});
            shared.printLine({line.time, ToUtf8(gap), LineKind::Warning});
        }
        shared.printLine(line);
    }
}

}
