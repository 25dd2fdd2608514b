#include "framework/SystemErrorText.h"
#include "framework/WindowsApi.h"

namespace tarvin {

KelText SystemErrorText(unsigned long errorNumber) {
    wchar_t* buffer = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    const DWORD length =
        ::FormatMessageW(flags, nullptr, errorNumber & 0xFFFF, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                         reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    KelText text(reinterpret_cast<const char16_t*>(buffer), length);
    ::LocalFree(buffer);
    while (!text.empty() && (text.back() == u'\r' || text.back() == u'\n' || text.back() == u' '))
        text.pop_back();
    return text;
}

}
