#include "framework/SystemName.h"
#include "framework/WindowsApi.h"

namespace tarvin {

namespace {

// The system's own answer; the documented call tells programs what their manifest says they know.
OSVERSIONINFOW Version() {
    using GetVersionCall = LONG(WINAPI*)(OSVERSIONINFOW*);
    OSVERSIONINFOW version = {};
    version.dwOSVersionInfoSize = sizeof version;
    const HMODULE module = ::GetModuleHandleW(L"ntdll.dll");
    const auto call =
        reinterpret_cast<GetVersionCall>(reinterpret_cast<void*>(::GetProcAddress(module, "RtlGetVersion")));
    if (call != nullptr)
        call(&version);
    return version;
}

}

KelText SystemName() {
    const OSVERSIONINFOW version = Version();
    const unsigned long number = version.dwMajorVersion * 100 + version.dwMinorVersion;
    return number >= 1000  ? u"Windows 10"
           : number >= 601 ? u"Windows 7"
           : number >= 600 ? u"Windows Vista"
           : number >= 501 ? u"Windows XP"
                           : u"Windows X";
}

}
