#include "base/Process.h"
#include "base/System.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <limits>
#include <string>

#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace tarvin {

std::uint64_t OwnProcessId() {
    return static_cast<std::uint64_t>(::getpid());
}

Result<> BecomeProgram(const std::filesystem::path& program, const std::vector<KelText>& words) {
    std::vector<std::string> arguments = {program.native()};
    for (const KelText& word : words)
        arguments.push_back(ToUtf8(word));
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    ::execv(program.c_str(), pointers.data());
    return LastSystemError();
}

bool IsProcessRunning(std::uint64_t process) {
    // Zero and negative numbers mean groups of processes.
    if (process == 0 || process > static_cast<std::uint64_t>(std::numeric_limits<pid_t>::max()))
        return false;
    return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

KelText UserName() {
    std::array<char, 4096> buffer = {};
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return FromUtf8(found->pw_name);
    return ToText(::geteuid());
}

KelText ComputerName() {
    utsname system = {};
    return ::uname(&system) == 0 ? FromUtf8(system.nodename) : KelText();
}

}
