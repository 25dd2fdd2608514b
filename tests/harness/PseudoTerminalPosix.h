#pragma once
// A line between a test and a program: the test holds the one end, the other end has a name.

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin::test {

class PseudoTerminal {
public:
    // What the other end is like before a program sets it up: as lines are found, or without echo and editing.
    enum class Mode { Cooked, Raw };

    explicit PseudoTerminal(Mode mode = Mode::Raw);
    ~PseudoTerminal() { Close(); }
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    const std::filesystem::path& Device() const { return device; }
    void Write(std::string_view bytes);
    // What has arrived once `byteCount` bytes are there or the time is up.
    std::string Read(std::size_t byteCount, std::chrono::milliseconds longest = std::chrono::seconds(10));
    // Hangs up.
    void Close();

private:
    int end = -1;
    std::filesystem::path device;
};

}
