#include "base/Process.h"
#include "base/System.h"
#include "base/WindowsApi.h"

#include <array>
#include <limits>
#include <string>

namespace tarvin {

namespace {

// Names of users have at most 256 units, names of computers fewer.
using NameBuffer = std::array<wchar_t, 257>;

}

std::uint64_t OwnProcessId() {
    return ::GetCurrentProcessId();
}

Result<> BecomeProgram(const std::filesystem::path& program, const std::vector<KelText>& words) {
    std::filesystem::path file = program;
    file.replace_extension(".exe");
    std::wstring line = L"\"" + file.native() + L"\"";
    for (const KelText& word : words)
        line += L" \"" + ToPath(word).native() + L"\"";
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION process = {};
    if (!::CreateProcessW(file.c_str(), line.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &start, &process))
        return LastSystemError();
    ::CloseHandle(process.hThread);
    ::CloseHandle(process.hProcess);
    return {};
}

bool IsProcessRunning(std::uint64_t process) {
    if (process == 0 || process > std::numeric_limits<DWORD>::max())
        return false;
    const HANDLE opened =
        ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (opened == nullptr)
        return ::GetLastError() == ERROR_ACCESS_DENIED;
    // A process that has ended stays known as long as someone holds a handle of it.
    const bool isRunning = ::WaitForSingleObject(opened, 0) == WAIT_TIMEOUT;
    ::CloseHandle(opened);
    return isRunning;
}

KelText ProcessStartMark(std::uint64_t process) {
    if (process == 0 || process > std::numeric_limits<DWORD>::max())
        return {};
    const HANDLE opened =
        ::OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION | SYNCHRONIZE, FALSE, static_cast<DWORD>(process));
    if (opened == nullptr)
        return {};
    FILETIME created = {};
    FILETIME unused = {};
    const bool isKnown = ::GetProcessTimes(opened, &created, &unused, &unused, &unused) != 0;
    const bool hasEnded = ::WaitForSingleObject(opened, 0) != WAIT_TIMEOUT;
    ::CloseHandle(opened);
    if (hasEnded)
        return u"ended";
    const auto time = static_cast<std::int64_t>(created.dwHighDateTime) << 32 | created.dwLowDateTime;
    return isKnown ? ToText(time) : KelText();
}

KelText UserName() {
    NameBuffer name = {};
    auto length = static_cast<DWORD>(name.size());
    return ::GetUserNameW(name.data(), &length) ? FromPath(std::filesystem::path(name.data())) : KelText();
}

KelText GroupName() {
    return {};
}

KelText ComputerName() {
    NameBuffer name = {};
    auto length = static_cast<DWORD>(name.size());
    return ::GetComputerNameW(name.data(), &length) ? FromPath(std::filesystem::path(name.data())) : KelText();
}

}
