#include "publish/Terminal.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <string>

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

namespace tarvin {

namespace {

volatile std::sig_atomic_t isEndRequested = 0;

constexpr int endSignals[] = {SIGINT, SIGTERM, SIGHUP, SIGQUIT};

class PosixTerminal : public Terminal {
public:
    PosixTerminal() {
        // The signals reach the program only while it waits, so none is lost between a look and a wait.
        sigset_t signals;
        sigemptyset(&signals);
        for (const int signal : endSignals)
            sigaddset(&signals, signal);
        ::pthread_sigmask(SIG_BLOCK, &signals, &usualMask);
        struct sigaction action = {};
        action.sa_handler = [](int) { isEndRequested = 1; };
        for (const int signal : endSignals) {
            struct sigaction present = {};
            ::sigaction(signal, nullptr, &present);
            // The caller wants a signal ignored that was ignored from the start.
            if (present.sa_handler != SIG_IGN)
                ::sigaction(signal, &action, nullptr);
        }
        hasKeys = ::tcgetattr(STDIN_FILENO, &usual) == 0;
        if (hasKeys) {
            termios keys = usual;
            keys.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO);
            // A program that is suspended would leave the terminal without its cursor.
            keys.c_cc[VSUSP] = _POSIX_VDISABLE;
            keys.c_cc[VMIN] = 0;
            keys.c_cc[VTIME] = 0;
            hasKeys = ::tcsetattr(STDIN_FILENO, TCSANOW, &keys) == 0;
        }
        (void)PosixTerminal::Write(beginDrawing);
    }

    ~PosixTerminal() override {
        (void)PosixTerminal::Write(endDrawing);
        if (hasKeys)
            ::tcsetattr(STDIN_FILENO, TCSAFLUSH, &usual);
    }

    TableRoom Room() const override {
        winsize size = {};
        if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) != 0 || size.ws_col == 0 || size.ws_row == 0)
            return {};
        return {size.ws_col, size.ws_row};
    }

    bool WaitForEnd(std::chrono::milliseconds longest) override {
        pollfd input = {STDIN_FILENO, POLLIN, 0};
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(longest);
        const timespec wait = {seconds.count(), static_cast<long>((longest - seconds).count() * 1'000'000)};
        const int ready = ::ppoll(&input, hasKeys ? 1 : 0, &wait, &usualMask);
        if (isEndRequested != 0)
            return true;
        if (ready <= 0)
            return false;
        char keys[64];
        const ssize_t count = ::read(STDIN_FILENO, keys, sizeof keys);
        // A terminal that is gone is always ready and has no keys.
        if (count == 0 || (count < 0 && errno != EINTR && errno != EAGAIN))
            return true;
        for (ssize_t index = 0; index < count; ++index) {
            // An arrow key is a sequence of characters, none of which is meant.
            if (keys[index] == '\x1b')
                return false;
            if (keys[index] == 'q' || keys[index] == 'Q')
                return true;
        }
        return false;
    }

    bool Write(std::string_view text) override {
        while (!text.empty()) {
            const ssize_t count = ::write(STDOUT_FILENO, text.data(), text.size());
            if (count < 0 && errno != EINTR)
                return false;
            text.remove_prefix(count < 0 ? 0 : static_cast<std::size_t>(count));
        }
        return true;
    }

private:
    sigset_t usualMask = {};
    termios usual = {};
    bool hasKeys = false;
};

}

std::unique_ptr<Terminal> Terminal::Open() {
    const char* const kind = std::getenv("TERM");
    const bool canDraw = kind != nullptr && *kind != '\0' && std::string_view(kind) != "dumb";
    if (!canDraw || ::isatty(STDOUT_FILENO) == 0)
        return nullptr;
    return std::make_unique<PosixTerminal>();
}

}
