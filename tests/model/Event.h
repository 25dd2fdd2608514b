#pragma once
// What can happen to the conversation between two looks at it: a message of the controller, silence, or a change of the
// disk or the line. The model and the program under test take the same events.

#include <chrono>
#include <string>

namespace tarvin::test {

// The calls of the program that fail while an event is handled.
enum class DiskFault {
    None,
    Write, // the disk is full
    Sync,  // the disk fails
    Name   // no file can take the name that the upload wants
};

struct Event {
    enum class Kind {
        Message,
        Silence,
        PartRemoved,  // another program removes the files of unfinished uploads
        NameHeld,     // another program holds every NC file: none can be replaced
        NameReleased, // and holds them no longer
        LinkLost,     // the link is lost, and is back at once
        Hold,         // XOFF
        Release       // XON
    };

    std::string name;
    Kind kind = Kind::Message;
    std::string message; // with its checksum character, without the carriage return
    int driverErrors = 0;
    DiskFault fault = DiskFault::None;
    std::chrono::milliseconds duration = {};
};

// A message with the right checksum character, and one with a wrong one.
Event Right(const std::string& text);
Event Wrong(const std::string& text);
Event WithDriverError(const std::string& text);
Event WithFault(const std::string& text, DiskFault fault);
Event Silence(std::chrono::milliseconds duration);
Event Change(std::string name, Event::Kind kind);

// The checksum character of a message text: what its sum lacks to a multiple of 128, lifted by 64 if it is 32 or less,
// less one.
char ChecksumOf(const std::string& text);

}
