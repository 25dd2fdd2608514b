#include "Desktop.h"

#include "Deadline.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <thread>

namespace tarvin::bench {

namespace {

// The output of xdotool, and whether it succeeded.
struct Reply {
    std::string text;
    bool isDone;
};

Reply RunXdotool(const std::string& command) {
    FILE* pipe = ::popen(("xdotool " + command).c_str(), "r");
    if (pipe == nullptr)
        throw std::runtime_error("xdotool cannot be run");
    Reply reply = {};
    for (int character; (character = std::fgetc(pipe)) != EOF;)
        reply.text += static_cast<char>(character);
    reply.isDone = ::pclose(pipe) == 0;
    return reply;
}

}

void RequireDisplay() {
    if (std::getenv("DISPLAY") == nullptr)
        throw std::runtime_error("there is no display; bench/run brings one");
}

std::string ShownWindow(const MeasuredProcess& program) {
    // xdotool fails when it finds no window, which is normal here.
    const Reply found = RunXdotool("search --all --onlyvisible --pid " + std::to_string(program.Id()) +
                                   " --name '^TARVIN' 2>/dev/null");
    return found.text.substr(0, found.text.find('\n'));
}

std::string AwaitWindow(const MeasuredProcess& program) {
    for (;;) {
        if (std::string window = ShownWindow(program); !window.empty())
            return window;
        Deadline::ThrowIfPassed();
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

std::string DisplayPixels() {
    const char* file = std::getenv("TARVIN_DISPLAY_PIXELS");
    std::ifstream stream(file != nullptr ? file : "", std::ios::binary);
    std::string pixels{std::istreambuf_iterator<char>(stream), {}};
    if (pixels.empty())
        throw std::runtime_error(
            "the pixels of this display cannot be read; bench/run brings a display with readable ones");
    return pixels;
}

std::size_t ChangedPixels(const std::string& before, const std::string& after) {
    constexpr std::size_t pixelSize = 4;
    std::size_t count = 0;
    for (std::size_t at = 0; at + pixelSize <= std::min(before.size(), after.size()); at += pixelSize)
        count += before.compare(at, pixelSize, after, at, pixelSize) != 0 ? 1U : 0U;
    return count;
}

void PressKey(const std::string& window, const std::string& key) {
    if (!RunXdotool("windowactivate --sync " + window + " key --clearmodifiers " + key).isDone)
        throw std::runtime_error("the window does not take the key " + key);
}

}
