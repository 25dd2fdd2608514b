#include "base/Process.h"
#include "base/System.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <limits>
#include <sstream>
#include <string>

#include <grp.h>
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

// The kernel counts the start from the start of the system, so the mark names that too.
KelText ProcessStartMark(std::uint64_t process) {
    std::string line;
    std::getline(std::ifstream("/proc/" + std::to_string(process) + "/stat"), line);
    // The program's name stands in brackets and may hold brackets and blanks itself.
    const auto nameEnd = line.rfind(')');
    if (nameEnd == std::string::npos)
        return {};
    std::istringstream fields(line.substr(nameEnd + 1));
    std::string state;
    std::string started;
    fields >> state;
    // The start is field 22, and the state is field 3.
    for (int field = 4; field <= 22; ++field)
        fields >> started;
    if (!fields)
        return {};
    if (state == "Z" || state == "X")
        return u"ended";
    std::string system;
    std::getline(std::ifstream("/proc/sys/kernel/random/boot_id"), system);
    return FromUtf8(system + " " + started);
}

KelText UserName() {
    std::array<char, 4096> buffer = {};
    passwd entry = {};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return FromUtf8(found->pw_name);
    return ToText(::geteuid());
}

KelText GroupName() {
    std::array<char, 4096> buffer = {};
    group entry = {};
    group* found = nullptr;
    if (::getgrgid_r(::getegid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr)
        return FromUtf8(found->gr_name);
    return ToText(::getegid());
}

KelText ComputerName() {
    utsname system = {};
    return ::uname(&system) == 0 ? FromUtf8(system.nodename) : KelText();
}

}
