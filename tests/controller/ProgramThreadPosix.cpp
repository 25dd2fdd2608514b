#include "ProgramThread.h"
#include "harness/WaitUntil.h"

#include <cerrno>

#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin::controller::test {

namespace {

// Leaves the line's settings alone: its maker has set it up.
int OpenWhenThere(const std::filesystem::path& path, const std::atomic<bool>& stopRequested) {
    int descriptor = -1;
    tarvin::test::WaitUntil([&] {
        descriptor = ::open(path.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
        return descriptor >= 0 || stopRequested;
    });
    if (descriptor >= 0)
        ::tcflush(descriptor, TCIFLUSH);
    return descriptor;
}

}

ProgramThread::ProgramThread(ProgramDouble program, std::filesystem::path device, int readsToAnswer)
    : program(std::move(program)), thread([this, path = std::move(device), readsToAnswer] {
          const int descriptor = OpenWhenThere(path, stopRequested);
          if (descriptor < 0)
              return;
          Serve(descriptor, readsToAnswer);
          ::close(descriptor);
      }) {}

ProgramThread::ProgramThread(ProgramDouble program, int descriptor)
    : program(std::move(program)), thread([this, descriptor] { Serve(descriptor, -1); }) {}

void ProgramThread::Join() {
    stopRequested = true;
    if (thread.joinable())
        thread.join();
}

void ProgramThread::Serve(int descriptor, int readsToAnswer) {
    for (int reads = 0; reads != readsToAnswer;) {
        // Read before the look at the line, so that a hang-up that came before the request is still noticed.
        const bool isLastLook = stopRequested;
        pollfd entry = {descriptor, POLLIN, 0};
        const int ready = ::poll(&entry, 1, 20);
        if (ready == 0 && isLastLook)
            return;
        if (ready <= 0)
            continue;
        char bytes[4096];
        const ssize_t count = ::read(descriptor, bytes, sizeof bytes);
        if (count <= 0) {
            sawHangUp = true;
            return;
        }
        ++reads;
        std::string replies = program.Receive({bytes, static_cast<std::size_t>(count)});
        while (!replies.empty()) {
            const ssize_t written = ::write(descriptor, replies.data(), replies.size());
            if (written < 0)
                return;
            replies.erase(0, static_cast<std::size_t>(written));
        }
    }
}

}
