#pragma once
// The far end of a line, or another connection out of the virtual machine, as a device that is read and written. It is
// opened again when it was hung up. Failures throw.

#include <chrono>
#include <filesystem>
#include <string>
#include <string_view>

namespace tarvin::test {

class FarEnd {
public:
    explicit FarEnd(std::filesystem::path path);
    ~FarEnd();
    FarEnd(const FarEnd&) = delete;
    FarEnd& operator=(const FarEnd&) = delete;

    // Blocks until the system has taken all of the bytes, 10 s at most.
    void Write(std::string_view bytes);
    // Waits until `byteCount` bytes have arrived or `longest` has passed. Returns all that has arrived.
    std::string Read(std::size_t byteCount, std::chrono::milliseconds longest);

private:
    void Open();

    const std::filesystem::path path;
    int device = -1;
};

}
