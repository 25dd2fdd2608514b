#pragma once
// A real driver of the kernel with a line: the device that the driver makes, the far end of the line, and the plug.
// Failures throw.

#include <chrono>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

namespace tarvin::test {

class UsbAdapter;

class DriverLine {
public:
    virtual ~DriverLine() = default;

    virtual const char* Name() const = 0;
    // The device of the port. Waits until it is there.
    virtual std::filesystem::path Device() = 0;

    // The far end of the line.
    virtual void Send(std::string_view bytes) = 0;
    // Waits until `byteCount` bytes have arrived or `longest` has passed. Returns all that has arrived.
    virtual std::string Receive(std::size_t byteCount, std::chrono::milliseconds longest) = 0;

    // Takes the device away and brings it back. Each returns when the device has gone or come.
    virtual void Unplug() = 0;
    virtual void Plug() = 0;

    // Whether the kernel's serial core drives the chip.
    virtual bool IsSerialCore() const { return false; }
    // Whether the bytes take their time on the line. Some emulated lines pass them at once.
    virtual bool HasSpeed() const { return false; }
    // The chip of the adapter, if it is ours.
    virtual UsbAdapter* Adapter() { return nullptr; }
};

// The driver that this run of the program is about, by the name that the command line gives. Null for an unknown name.
std::unique_ptr<DriverLine> MakeDriverLine(std::string_view name);

// Set by the main function before the first case.
DriverLine& Driver();
void SetDriver(DriverLine& driver);

}
