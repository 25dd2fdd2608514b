#include "base/System.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace tarvin {

std::filesystem::path ToPath(KelTextView text) {
    return std::filesystem::path(ToUtf8(text));
}

KelText FromPath(const std::filesystem::path& path) {
    return FromUtf8(path.native());
}

KelText SystemErrorText(unsigned long errorNumber) {
    return FromUtf8(std::generic_category().message(static_cast<int>(errorNumber & 0xFFFF)));
}

Error LastSystemError() {
    return {SystemErrorText(static_cast<unsigned long>(errno))};
}

std::optional<std::filesystem::path> PathFromEnvironment(const char* name) {
    const char* const value = std::getenv(name);
    return value == nullptr || *value == '\0' ? std::nullopt : std::optional<std::filesystem::path>(value);
}

bool IsInputTerminal() {
    return ::isatty(STDIN_FILENO) == 1;
}

// Distributions name themselves in this file; uname() knows the kernel alone.
KelText SystemName() {
    std::ifstream release("/etc/os-release");
    constexpr std::string_view key = "PRETTY_NAME=\"";
    for (std::string line; std::getline(release, line);) {
        if (line.starts_with(key))
            return FromUtf8(std::string_view(line).substr(key.size(), line.find('"', key.size()) - key.size()));
    }
    utsname system = {};
    ::uname(&system);
    return FromUtf8(std::string(system.sysname) + " " + system.release);
}

std::vector<KelText> ProgramArguments(int argumentCount, const char* const* arguments) {
    std::vector<KelText> words;
    for (int index = 1; index < argumentCount; ++index)
        words.push_back(FromUtf8(arguments[index]));
    return words;
}

// The shell has split it into words.
std::optional<KelText> TypedCommandLine() {
    return std::nullopt;
}

void SecureStandardStreams() {
    // The system hands out the lowest free number, so the closed streams are filled in order.
    int opened = 0;
    do {
        opened = ::open("/dev/null", O_RDWR);
    } while (opened >= 0 && opened <= STDERR_FILENO);
    if (opened > STDERR_FILENO)
        ::close(opened);
}

void PrepareOutput() {
    std::signal(SIGPIPE, SIG_IGN);
}

}
