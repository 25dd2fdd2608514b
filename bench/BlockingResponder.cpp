// bench-responder: does the least work that can answer a controller, and so shows the limit of the computer. For each
// frame it makes one blocking read, finds the end, and writes a frame that it prepared before. Runs until a signal ends
// it.

#include "NcText.h"
#include "protocol/Frame.h"

#include <cstdio>
#include <exception>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

using namespace tarvin;

class Responder {
public:
    Responder(int device, std::vector<std::string> frames) : device(device), frames(std::move(frames)) {}

    // Answers until the line fails.
    void Run() {
        char buffer[256];
        std::size_t length = 0;
        for (;;) {
            const ssize_t count = ::read(device, buffer + length, sizeof buffer - length);
            if (count <= 0)
                return;
            length += static_cast<std::size_t>(count);
            // The controller waits for each answer, so nothing can follow the end of a frame.
            if (buffer[length - 1] != frameEnd)
                continue;
            if (!Answer(std::string_view(buffer, length)))
                return;
            length = 0;
        }
    }

private:
    bool Answer(std::string_view message) {
        if (message.starts_with(code::dataGood))
            return Send(next < frames.size() ? frames[next++] : end);
        if (!message.starts_with(code::downloadRequest))
            return true;
        next = 1;
        return Send(acknowledge) && Send(frames.front());
    }

    bool Send(const std::string& frame) {
        return ::write(device, frame.data(), frame.size()) == static_cast<ssize_t>(frame.size());
    }

    const int device;
    const std::vector<std::string> frames;
    const std::string acknowledge = bench::FrameOf(code::acknowledge);
    const std::string end = bench::FrameOf(code::downloadEnd);
    std::size_t next = 0;
};

}

int main(int argumentCount, char** arguments) {
    if (argumentCount != 3) {
        std::fputs("Usage: bench-responder DEVICE NC-FILE\n", stderr);
        return 2;
    }
    try {
        auto frames = bench::ReadDataFrames(arguments[2], std::numeric_limits<std::size_t>::max());
        const int device = ::open(arguments[1], O_RDWR | O_NOCTTY);
        if (device < 0) {
            std::perror(arguments[1]);
            return 1;
        }
        Responder(device, std::move(frames)).Run();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench-responder: %s\n", error.what());
    }
    return 1;
}
