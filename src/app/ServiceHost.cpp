#include "app/ServiceHost.h"

#include "app/StopRequest.h"

#include <cstdio>
#include <ctime>

namespace tarvin {

namespace {

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

void TerminalHost::Print(const ServiceLine& line) {
    std::fprintf(stdout, "%s %s\n", LocalTime(line.time).c_str(), line.text.c_str());
    std::fflush(stdout);
}

void TerminalHost::TellFailure(KelTextView reason) {
    std::fprintf(stderr, "tarvindl-service: %s\n", ToUtf8(reason).c_str());
}

void TerminalHost::PrepareStop() {
    PrepareStopRequests();
}

}
