#include "app/ServiceOutput.h"

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <utility>

namespace tarvin {

using namespace std::chrono_literals;

namespace {

constexpr auto patienceAtEnd = 500ms;

// The printing thread alone calls it: localtime keeps its result in one place for the whole process.
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
    std::unique_lock lock(shared->mutex);
    shared->isClosing = true;
    shared->changed.notify_all();
    const bool isDone = shared->changed.wait_for(lock, patienceAtEnd, [this] { return shared->isDone; });
    lock.unlock();
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
    const std::lock_guard lock(shared->mutex);
    if (shared->lines.size() >= capacity) {
        shared->lines.pop_front();
        ++shared->lostCount;
    }
    shared->lines.push_back(std::move(line));
    shared->changed.notify_all();
}

void ServiceOutput::Print(Shared& shared) {
    std::unique_lock lock(shared.mutex);
    for (;;) {
        shared.changed.wait(lock, [&] { return shared.isClosing || !shared.lines.empty(); });
        if (shared.lines.empty())
            break;
        const std::size_t lost = std::exchange(shared.lostCount, 0);
        const Line line = std::move(shared.lines.front());
        shared.lines.pop_front();
        lock.unlock();
        const std::string time = LocalTime(line.time);
        if (lost > 0)
            std::fprintf(stdout, "%s ... %zu lines not printed ...\n", time.c_str(), lost);
        std::fprintf(stdout, "%s %s\n", time.c_str(), line.text.c_str());
        std::fflush(stdout);
        lock.lock();
    }
    shared.isDone = true;
    shared.changed.notify_all();
}

}
