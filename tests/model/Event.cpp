#include "model/Event.h"

#include <utility>

namespace tarvin::test {

char ChecksumOf(const std::string& text) {
    unsigned sum = 0;
    for (const char character : text)
        sum += static_cast<unsigned char>(character);
    unsigned missing = (128 - sum % 128) % 128;
    if (missing <= 32)
        missing += 64;
    return static_cast<char>(missing - 1);
}

Event Right(const std::string& text) {
    Event event;
    event.name = text;
    event.message = text + ChecksumOf(text);
    return event;
}

Event Wrong(const std::string& text) {
    Event event;
    event.name = text + " (wrong checksum)";
    event.message = text + (ChecksumOf(text) == '!' ? '"' : '!');
    return event;
}

Event WithDriverError(const std::string& text) {
    Event event = Right(text);
    event.name += " (driver error)";
    event.driverErrors = 2;
    return event;
}

Event WithFault(const std::string& text, DiskFault fault) {
    Event event = Right(text);
    event.name += fault == DiskFault::Write  ? " (full disk)"
                  : fault == DiskFault::Sync ? " (failing disk)"
                                             : " (name refused)";
    event.fault = fault;
    return event;
}

Event Silence(std::chrono::milliseconds duration) {
    Event event;
    event.name = "silence of " + std::to_string(duration.count()) + " ms";
    event.kind = Event::Kind::Silence;
    event.duration = duration;
    return event;
}

Event Change(std::string name, Event::Kind kind) {
    Event event;
    event.name = std::move(name);
    event.kind = kind;
    return event;
}

}
