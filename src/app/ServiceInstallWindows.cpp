#include "app/ServiceControl.h"
#include "app/ServiceRightsWindows.h"
#include "base/Messages.h"
#include "base/ServiceMessages.h"
#include "base/System.h"
#include "base/WindowsApi.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto longestStateChange = 30s;
constexpr auto statePollPeriod = 50ms;
constexpr DWORD restartDelay = 5000;       // ms
constexpr DWORD failureMemory = 24 * 3600; // s
constexpr DWORD endWait = 10000;           // ms that a shutdown of the system grants
constexpr wchar_t eventSources[] = L"SYSTEM\\CurrentControlSet\\Services\\EventLog\\Application\\";

struct CloseHandleOfManager {
    using pointer = SC_HANDLE;
    void operator()(SC_HANDLE handle) const { ::CloseServiceHandle(handle); }
};
using ManagerHandle = std::unique_ptr<SC_HANDLE, CloseHandleOfManager>;

std::wstring Wide(KelTextView text) {
    return std::wstring(text.begin(), text.end());
}

Error ManagerError(DWORD error) {
    const KelText reason = SystemErrorText(error);
    return {error == ERROR_ACCESS_DENIED ? Filled(text::serviceManager::administratorNeeded, {reason}) : reason};
}

Error LastManagerError() {
    return ManagerError(::GetLastError());
}

Result<std::wstring> ProgramFile() {
    std::wstring path(32768, L'\0');
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length >= path.size())
        return LastSystemError();
    path.resize(length);
    return path;
}

// A word of a command line, as the system takes it apart again: backslashes count only in front of a quote.
std::wstring Quoted(std::wstring_view word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t unit : word) {
        if (unit == L'"')
            quoted.append(backslashes + 1, L'\\');
        backslashes = unit == L'\\' ? backslashes + 1 : 0;
        quoted += unit;
    }
    quoted.append(backslashes, L'\\');
    return quoted + L'"';
}

// The first word of a command line, if it is quoted.
std::wstring_view FirstWord(std::wstring_view command) {
    if (!command.starts_with(L'"'))
        return {};
    command.remove_prefix(1);
    return command.substr(0, command.find(L'"'));
}

// Waits until the service leaves its pending state. The last state; none if it takes too long.
std::optional<SERVICE_STATUS_PROCESS> WaitForState(SC_HANDLE service, DWORD pending) {
    const auto deadline = std::chrono::steady_clock::now() + longestStateChange;
    for (;;) {
        SERVICE_STATUS_PROCESS status = {};
        DWORD size = 0;
        if (!::QueryServiceStatusEx(service, SC_STATUS_PROCESS_INFO, reinterpret_cast<BYTE*>(&status), sizeof status,
                                    &size))
            return std::nullopt;
        if (status.dwCurrentState != pending)
            return status;
        if (std::chrono::steady_clock::now() > deadline)
            return std::nullopt;
        std::this_thread::sleep_for(statePollPeriod);
    }
}

Result<> Stop(SC_HANDLE service, const KelText& name) {
    SERVICE_STATUS status = {};
    if (!::ControlService(service, SERVICE_CONTROL_STOP, &status)) {
        const DWORD error = ::GetLastError();
        if (error == ERROR_SERVICE_NOT_ACTIVE)
            return {};
        // A service that is just stopping takes no second request.
        if (error != ERROR_SERVICE_CANNOT_ACCEPT_CTRL)
            return ManagerError(error);
    }
    const auto state = WaitForState(service, SERVICE_STOP_PENDING);
    if (!state || state->dwCurrentState != SERVICE_STOPPED)
        return Error{Filled(text::serviceManager::stopIsSlow, {name})};
    return {};
}

Result<> Start(SC_HANDLE service, const KelText& name) {
    if (!::StartServiceW(service, 0, nullptr) && ::GetLastError() != ERROR_SERVICE_ALREADY_RUNNING)
        return LastManagerError();
    const auto state = WaitForState(service, SERVICE_START_PENDING);
    if (!state)
        return Error{text::serviceManager::startIsSlow};
    if (state->dwCurrentState == SERVICE_RUNNING)
        return {};
    const DWORD code = state->dwWin32ExitCode == ERROR_SERVICE_SPECIFIC_ERROR ? state->dwServiceSpecificExitCode
                                                                              : state->dwWin32ExitCode;
    return Error{Filled(text::serviceManager::seeEvents, {ToText(static_cast<std::int64_t>(code)), name})};
}

// Events that the log shows keep their text only as long as this entry names a file with the message table.
Result<> RegisterEventSource(const KelText& name, const std::wstring& program) {
    HKEY key = nullptr;
    const LONG error = ::RegCreateKeyExW(HKEY_LOCAL_MACHINE, (eventSources + Wide(name)).c_str(), 0, nullptr, 0,
                                         KEY_SET_VALUE, nullptr, &key, nullptr);
    if (error != ERROR_SUCCESS)
        return ManagerError(static_cast<DWORD>(error));
    const DWORD types = EVENTLOG_ERROR_TYPE | EVENTLOG_WARNING_TYPE | EVENTLOG_INFORMATION_TYPE;
    ::RegSetValueExW(key, L"EventMessageFile", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(program.c_str()),
                     static_cast<DWORD>((program.size() + 1) * sizeof(wchar_t)));
    ::RegSetValueExW(key, L"TypesSupported", 0, REG_DWORD, reinterpret_cast<const BYTE*>(&types), sizeof types);
    ::RegCloseKey(key);
    return {};
}

// Systems without one of these settings do without it.
void Describe(SC_HANDLE service, const KelText& machineName) {
    std::wstring words = Wide(Filled(text::serviceManager::description, {machineName}));
    SERVICE_DESCRIPTIONW description = {words.data()};
    ::ChangeServiceConfig2W(service, SERVICE_CONFIG_DESCRIPTION, &description);
    SC_ACTION restarts[] = {
        {SC_ACTION_RESTART, restartDelay}, {SC_ACTION_RESTART, restartDelay}, {SC_ACTION_RESTART, restartDelay}};
    // After a crash alone: a service that ends with a reason of its own would only end again.
    SERVICE_FAILURE_ACTIONSW failureActions = {failureMemory, nullptr, nullptr, 3, restarts};
    ::ChangeServiceConfig2W(service, SERVICE_CONFIG_FAILURE_ACTIONS, &failureActions);
    SERVICE_DELAYED_AUTO_START_INFO delayed = {TRUE};
    ::ChangeServiceConfig2W(service, SERVICE_CONFIG_DELAYED_AUTO_START_INFO, &delayed);
    SERVICE_PRESHUTDOWN_INFO shutdown = {endWait};
    ::ChangeServiceConfig2W(service, SERVICE_CONFIG_PRESHUTDOWN_INFO, &shutdown);
}

// This account may do everything, and the security calls know it by another name.
constexpr KelTextView localSystem = u"LocalSystem";

// Whether the password of the account is needed to log it on.
bool HasPassword(const KelText& account) {
    for (const KelTextView prefix : {u"NT SERVICE\\", u"NT AUTHORITY\\"}) {
        if (EqualIgnoringCase(KelTextView(account).substr(0, prefix.size()), prefix))
            return false;
    }
    // A name with a dollar sign at its end is managed by the domain.
    return !EqualIgnoringCase(account, localSystem) && !account.ends_with(u'$');
}

// One line for each folder on which the account got no rights.
KelText GrantRights(const KelText& account, const std::filesystem::path& program,
                    const std::filesystem::path& installation) {
    KelText problems;
    if (EqualIgnoringCase(account, localSystem))
        return problems;
    const auto grant = [&](const std::filesystem::path& folder, FolderRights rights) {
        const auto granted = GrantFolderRights(folder, account, rights);
        if (!granted)
            problems +=
                u"\n" + Filled(text::serviceManager::noRights, {account, FromPath(folder), granted.Reason().text});
    };
    grant(program, FolderRights::Use);
    grant(installation, FolderRights::Change);
    // Users see the status of services here.
    if (const auto data = FolderFromEnvironment("ProgramData")) {
        const auto status = *data / "TarvinDL" / "run";
        std::error_code ignored;
        std::filesystem::create_directories(status, ignored);
        grant(status, FolderRights::Change);
    }
    return problems;
}

// The services of this system that run this program.
Result<std::vector<KelText>> OwnServices(SC_HANDLE manager) {
    const auto program = ProgramFile();
    if (!program)
        return program.Reason();
    std::vector<BYTE> buffer;
    DWORD needed = 0;
    DWORD count = 0;
    DWORD resume = 0;
    while (!::EnumServicesStatusExW(manager, SC_ENUM_PROCESS_INFO, SERVICE_WIN32, SERVICE_STATE_ALL, buffer.data(),
                                    static_cast<DWORD>(buffer.size()), &needed, &count, &resume, nullptr)) {
        if (::GetLastError() != ERROR_MORE_DATA)
            return LastManagerError();
        // `needed` is the rest alone, and services may be added between the calls.
        buffer.resize(buffer.size() + needed + 4096);
        resume = 0;
    }
    std::vector<KelText> names;
    const auto* const services = reinterpret_cast<const ENUM_SERVICE_STATUS_PROCESSW*>(buffer.data());
    for (DWORD index = 0; index < count; ++index) {
        const std::wstring_view name = services[index].lpServiceName;
        const ManagerHandle service(::OpenServiceW(manager, services[index].lpServiceName, SERVICE_QUERY_CONFIG));
        std::vector<BYTE> bytes(8192); // the system's limit
        auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(bytes.data());
        if (!service || !::QueryServiceConfigW(service.get(), config, static_cast<DWORD>(bytes.size()), &needed))
            continue;
        // The same file may have several names: a drive of its own, or a short name.
        std::error_code ignored;
        if (std::filesystem::equivalent(FirstWord(config->lpBinaryPathName), *program, ignored))
            names.emplace_back(name.begin(), name.end());
    }
    return names;
}

Result<> RemoveNamed(SC_HANDLE manager, const KelText& name) {
    const ManagerHandle service(::OpenServiceW(manager, Wide(name).c_str(),
                                               SERVICE_STOP | SERVICE_QUERY_STATUS | SERVICE_QUERY_CONFIG | DELETE));
    if (!service) {
        if (::GetLastError() == ERROR_SERVICE_DOES_NOT_EXIST)
            return Error{Filled(text::serviceManager::notInstalled, {name})};
        return LastManagerError();
    }
    if (const auto stopped = Stop(service.get(), name); !stopped)
        return stopped;
    if (!::DeleteService(service.get()))
        return LastManagerError();
    ::RegDeleteKeyW(HKEY_LOCAL_MACHINE, (eventSources + Wide(name)).c_str());
    return {};
}

Result<> Act(SC_HANDLE manager, const KelText& name, ServiceAction action) {
    if (action == ServiceAction::Remove)
        return RemoveNamed(manager, name);
    const ManagerHandle service(
        ::OpenServiceW(manager, Wide(name).c_str(), SERVICE_START | SERVICE_STOP | SERVICE_QUERY_STATUS));
    if (!service)
        return LastManagerError();
    return action == ServiceAction::Start ? Start(service.get(), name) : Stop(service.get(), name);
}

}

bool HasServiceManager() {
    return true;
}

Result<KelText> InstallService(const ManagedService& wanted) {
    const auto program = ProgramFile();
    if (!program)
        return program.Reason();
    const KelText name = ServiceNameOf(wanted.machineName);
    const KelText account = AccountOf(wanted);
    const std::wstring command = Quoted(*program) + L' ' + Wide(runServiceOption) + L' ' +
                                 Quoted(wanted.installation.native()) + L' ' + Quoted(Wide(wanted.commandLine));
    const ManagerHandle manager(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_CREATE_SERVICE));
    if (!manager)
        return LastManagerError();
    KelTextView done = text::serviceManager::installed;
    ManagerHandle service(::CreateServiceW(manager.get(), Wide(name).c_str(), Wide(name).c_str(), SERVICE_ALL_ACCESS,
                                           SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                                           command.c_str(), nullptr, nullptr, nullptr, Wide(account).c_str(), nullptr));
    if (!service && ::GetLastError() == ERROR_SERVICE_EXISTS) {
        done = text::serviceManager::updated;
        service.reset(::OpenServiceW(manager.get(), Wide(name).c_str(), SERVICE_ALL_ACCESS));
        if (!service)
            return LastManagerError();
        if (const auto stopped = Stop(service.get(), name); !stopped)
            return stopped.Reason();
        if (!::ChangeServiceConfigW(service.get(), SERVICE_WIN32_OWN_PROCESS, SERVICE_AUTO_START, SERVICE_ERROR_NORMAL,
                                    command.c_str(), nullptr, nullptr, nullptr, Wide(account).c_str(), nullptr,
                                    Wide(name).c_str()))
            return LastManagerError();
    }
    if (!service)
        return LastManagerError();
    Describe(service.get(), wanted.machineName);
    if (const auto registered = RegisterEventSource(name, *program); !registered)
        return registered.Reason();
    KelText told = Filled(done, {name, account});
    told += GrantRights(account, std::filesystem::path(*program).parent_path(), wanted.installation);
    if (HasPassword(account))
        return told + u"\n" + Filled(text::serviceManager::needsPassword, {account});
    const auto started = Start(service.get(), name);
    told += u"\n";
    told += started ? KelText(text::serviceManager::isRunning)
                    : Filled(text::serviceManager::isNotRunning, {started.Reason().text});
    return told;
}

Result<KelText> RemoveService(KelTextView machineName) {
    const ManagerHandle manager(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT));
    if (!manager)
        return LastManagerError();
    const KelText name = ServiceNameOf(machineName);
    if (const auto removed = RemoveNamed(manager.get(), name); !removed)
        return removed.Reason();
    return Filled(text::serviceManager::removed, {name});
}

Result<KelText> ActOnServices(ServiceAction action) {
    const ManagerHandle manager(::OpenSCManagerW(nullptr, nullptr, SC_MANAGER_CONNECT | SC_MANAGER_ENUMERATE_SERVICE));
    if (!manager)
        return LastManagerError();
    const auto names = OwnServices(manager.get());
    if (!names)
        return names.Reason();
    KelText told;
    std::optional<Error> problem;
    for (const KelText& name : *names) {
        if (const auto result = Act(manager.get(), name, action); !result)
            problem = Error{name + u": " + result.Reason().text};
        told += (told.empty() ? u"" : u", ") + name;
    }
    if (problem)
        return *problem;
    return Filled(text::serviceManager::didForAll, {told});
}

}
