#include "app/StopRequest.h"
#include "base/WindowsApi.h"

namespace tarvin {

namespace {

HANDLE stopEvent = nullptr;
HANDLE reloadEvent = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD event) {
    ::SetEvent(stopEvent);
    // Apart from these two events, the system ends the process as soon as this handler returns. It stays here, so that
    // the main thread can finish.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE);
    return TRUE;
}

LRESULT CALLBACK OnWindowMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_ENDSESSION && first != 0) {
        ::SetEvent(stopEvent);
        // As above: the process ends when this call returns.
        ::Sleep(INFINITE);
    }
    return ::DefWindowProcW(window, message, first, second);
}

// A program that has loaded user32, as reading the command line does, gets no console event when the session ends. Its
// windows get a message instead, so this thread keeps a hidden window. Where no window can be made, there is no session
// that could end.
DWORD WINAPI WatchSession(void* watching) {
    WNDCLASSW kind = {};
    kind.lpfnWndProc = OnWindowMessage;
    kind.hInstance = ::GetModuleHandleW(nullptr);
    kind.lpszClassName = L"TarvinDL session";
    ::RegisterClassW(&kind);
    ::CreateWindowExW(0, kind.lpszClassName, L"", WS_OVERLAPPED, 0, 0, 0, 0, nullptr, nullptr, kind.hInstance, nullptr);
    ::SetEvent(watching);
    MSG message = {};
    while (::GetMessageW(&message, nullptr, 0, 0) > 0)
        ::DispatchMessageW(&message);
    return 0;
}

}

void PrepareStopRequestsOfManager() {
    stopEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    reloadEvent = ::CreateEventW(nullptr, FALSE, FALSE, nullptr);
}

void PrepareStopRequests() {
    PrepareStopRequestsOfManager();
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
    const HANDLE watching = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (const HANDLE thread = ::CreateThread(nullptr, 0, WatchSession, watching, 0, nullptr)) {
        // Without the window, the end of the session would go unnoticed.
        ::WaitForSingleObject(watching, INFINITE);
        ::CloseHandle(thread);
    }
    ::CloseHandle(watching);
}

// Windows has no signal to reload. The service manager posts such requests to a service; ProgramRequests takes all
// others.
void WaitForStopRequest(const std::function<void()>& reload) {
    const HANDLE requests[] = {stopEvent, reloadEvent};
    while (::WaitForMultipleObjects(2, requests, FALSE, INFINITE) == WAIT_OBJECT_0 + 1) {
        if (reload)
            reload();
    }
}

void PostReloadRequest() {
    ::SetEvent(reloadEvent);
}

void EndStopRequests() {
    ::SetEvent(stopEvent);
}

}
