#include "app/StopRequest.h"
#include "framework/WindowsApi.h"

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

}

void PrepareStopRequests() {
    stopEvent = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
    ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
}

void WaitForStopRequest() {
    ::WaitForSingleObject(stopEvent, INFINITE);
}

void EndStopRequests() {
    ::SetEvent(stopEvent);
}

}
