#include "app/ServiceControl.h"
#include "app/StopRequest.h"
#include "base/ServiceMessages.h"
#include "base/System.h"
#include "base/WindowsApi.h"

#include <algorithm>
#include <string>

namespace tarvin {

namespace {

// The manager takes a service for hung that reports nothing for this time while it starts or stops.
constexpr DWORD startWait = 15000;
constexpr DWORD stopWait = 5000;

// The only message of the program's message table: "%1".
constexpr DWORD lineEvent = 1;
// The event log takes no longer text.
constexpr std::size_t longestEvent = 31000;

class ManagedHost : public ServiceHost {
public:
    explicit ManagedHost(wchar_t* name) : events(::RegisterEventSourceW(nullptr, name)) {
        handle = ::RegisterServiceCtrlHandlerExW(name, OnControl, this);
        Report(SERVICE_START_PENDING, startWait);
    }

    void Print(const ServiceLine& line) override {
        // Progress would soon push everything else out of the log, which all programs share.
        if (line.kind == LineKind::Progress)
            return;
        WriteEvent(FromUtf8(line.text), line.kind == LineKind::Error     ? EVENTLOG_ERROR_TYPE
                                        : line.kind == LineKind::Warning ? EVENTLOG_WARNING_TYPE
                                                                         : EVENTLOG_INFORMATION_TYPE);
    }

    void TellFailure(KelTextView reason) override { WriteEvent(KelText(reason), EVENTLOG_ERROR_TYPE); }

    void PrepareStop() override { PrepareStopRequestsOfManager(); }

    void ReportServing() override { Report(SERVICE_RUNNING, 0); }

    // The process may be ended as soon as this call is made.
    void ReportEnd(int exitCode) override {
        MutexLock lock(mutex);
        status.dwWin32ExitCode = exitCode == 0 ? NO_ERROR : ERROR_SERVICE_SPECIFIC_ERROR;
        status.dwServiceSpecificExitCode = static_cast<DWORD>(exitCode);
        ReportLocked(SERVICE_STOPPED, 0);
    }

private:
    void WriteEvent(const KelText& text, unsigned long type) {
        std::wstring line(text.begin(),
                          text.begin() + static_cast<std::ptrdiff_t>(std::min(text.size(), longestEvent)));
        const wchar_t* lines[] = {line.c_str()};
        ::ReportEventW(events, static_cast<WORD>(type), 0, lineEvent, nullptr, 1, 0, lines, nullptr);
    }

    void Report(DWORD state, DWORD wait) {
        const MutexLock lock(mutex);
        ReportLocked(state, wait);
    }

    void ReportLocked(DWORD state, DWORD wait) REQUIRES(mutex) {
        // A process that has reported its end must not report anything else.
        if (status.dwCurrentState == SERVICE_STOPPED)
            return;
        const bool isPending = state == SERVICE_START_PENDING || state == SERVICE_STOP_PENDING;
        status.dwServiceType = SERVICE_WIN32_OWN_PROCESS;
        status.dwCurrentState = state;
        // Without these the manager refuses a request to stop: a service that starts has nothing yet that could stop.
        status.dwControlsAccepted = state == SERVICE_RUNNING
                                        ? SERVICE_ACCEPT_STOP | SERVICE_ACCEPT_SHUTDOWN | SERVICE_ACCEPT_PRESHUTDOWN |
                                              SERVICE_ACCEPT_PARAMCHANGE
                                        : 0;
        status.dwCheckPoint = isPending ? status.dwCheckPoint + 1 : 0;
        status.dwWaitHint = wait;
        ::SetServiceStatus(handle, &status);
    }

    static DWORD WINAPI OnControl(DWORD control, DWORD, void*, void* context) {
        ManagedHost& host = *static_cast<ManagedHost*>(context);
        switch (control) {
        case SERVICE_CONTROL_STOP:
        case SERVICE_CONTROL_SHUTDOWN:
        case SERVICE_CONTROL_PRESHUTDOWN:
            host.Report(SERVICE_STOP_PENDING, stopWait);
            EndStopRequests();
            return NO_ERROR;
        case SERVICE_CONTROL_PARAMCHANGE:
            PostReloadRequest();
            return NO_ERROR;
        case SERVICE_CONTROL_INTERROGATE:
            return NO_ERROR;
        default:
            return ERROR_CALL_NOT_IMPLEMENTED;
        }
    }

    const HANDLE events;
    SERVICE_STATUS_HANDLE handle = nullptr;
    Mutex mutex;
    SERVICE_STATUS status GUARDED_BY(mutex) = {};
};

// The manager calls a function without any context.
const std::function<int(ServiceHost&)>* serveService = nullptr;

void WINAPI RunService(DWORD, wchar_t** arguments) {
    // Never destroyed: the manager may call its handler until the process ends.
    auto* const host = new ManagedHost(arguments[0]);
    host->ReportEnd((*serveService)(*host));
}

}

Result<> RunForServiceManager(const std::function<int(ServiceHost&)>& serve) {
    serveService = &serve;
    wchar_t anyName[] = L"";
    const SERVICE_TABLE_ENTRYW table[] = {{anyName, RunService}, {nullptr, nullptr}};
    if (::StartServiceCtrlDispatcherW(table))
        return {};
    if (::GetLastError() == ERROR_FAILED_SERVICE_CONTROLLER_CONNECT)
        return Error{text::serviceManager::wrongStart};
    return LastSystemError();
}

}
