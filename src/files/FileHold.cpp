#include "files/FileHold.h"

#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto pollPeriod = 5ms;

}

// The program that held the file may have replaced it. The file that was opened here is then an old one when its lock
// is free, and is opened again.
bool HoldFile(NativeFile& file, const std::filesystem::path& path, std::chrono::milliseconds longestWait) {
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    while (file.Open(path, NativeFile::Access::Read)) {
        if (file.Lock() && file.IsAt(path))
            return true;
        if (std::chrono::steady_clock::now() >= deadline)
            break;
        std::this_thread::sleep_for(pollPeriod);
    }
    file.Close();
    return false;
}

}
