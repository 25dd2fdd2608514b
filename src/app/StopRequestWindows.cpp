#include "app/StopRequest.h"
#include "base/WindowsApi.h"

namespace tarvin {

namespace {

HANDLE stopEvent = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD event) {
    ::SetEvent(stopEvent);
    // After this handler returns the system ends the process at once in all but these two cases; so it stays here until
    // the main thread has finished.
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT)
        ::Sleep(INFINITE);
    return TRUE;
}

LRESULT CALLBACK OnWindowMessage(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_ENDSESSION && first != 0) {
        ::SetEvent(stopEvent);
        // As above: the process has no longer than this call lasts.
        ::Sleep(INFINITE);
    }
    return ::DefWindowProcW(window, message, first, second);
}

// A console does not tell of logging off and shutting down to a program that has loaded the window system's library, as
// any does that reads its command line; its windows are told. Where none can be made, there is no session to end
// either.
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

void PrepareStopRequests() {
    stopEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
    const HANDLE watching = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    if (const HANDLE thread = ::CreateThread(nullptr, 0, WatchSession, watching, 0, nullptr)) {
        // A session that ends before the window is there would end without us.
        ::WaitForSingleObject(watching, INFINITE);
        ::CloseHandle(thread);
    }
    ::CloseHandle(watching);
}

void WaitForStopRequest() {
    ::WaitForSingleObject(stopEvent, INFINITE);
}

void EndStopRequests() {
    ::SetEvent(stopEvent);
}

}
