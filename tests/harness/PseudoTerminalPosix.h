#pragma once
// A pseudo-terminal: the line between a test or benchmark, which takes the controller's place, and the program. The
// program opens the device as its serial port. Each failed system call throws.

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin::test {

class PseudoTerminal {
public:
    // The state of the device before a program sets it up. Cooked: with echo and line editing, as the system makes it.
    enum class Mode { Cooked, Raw };

    explicit PseudoTerminal(Mode mode = Mode::Raw);
    ~PseudoTerminal() { Close(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    const std::filesystem::path& Device() const { return device; }
    // The controller's end, blocking, for a caller that reads and writes it directly. -1 after Close.
    int Descriptor() const { return descriptor; }

    // Keeps the device open as well until Close. Without this, reading fails while no program has the device open.
    void HoldDevice();

    // Blocks until the system has taken all of the bytes.
    void Write(std::string_view bytes);
    // Waits until `byteCount` bytes have arrived or `longest` has passed. Returns what has arrived, which may be more.
    std::string Read(std::size_t byteCount, std::chrono::milliseconds longest = std::chrono::seconds(10));
    // Hangs up: the program sees its device vanish.
    void Close();

private:
    int descriptor = -1;
    int heldDevice = -1;
    std::filesystem::path device;
};

}
