#include "base/System.h"
#include "base/WindowsApi.h"

#include <cstdio>
#include <string>
#include <string_view>

#include <io.h>
#include <shellapi.h>

namespace tarvin {

std::filesystem::path ToPath(KelTextView text) {
    return std::filesystem::path(std::wstring(text.begin(), text.end()));
}

KelText FromPath(const std::filesystem::path& path) {
    const std::wstring& native = path.native();
    return KelText(native.begin(), native.end());
}

KelText SystemErrorText(unsigned long errorNumber) {
    wchar_t* buffer = nullptr;
    const DWORD flags = FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_FROM_SYSTEM;
    const DWORD length =
        ::FormatMessageW(flags, nullptr, errorNumber & 0xFFFF, MAKELANGID(LANG_NEUTRAL, SUBLANG_DEFAULT),
                         reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    KelText text(reinterpret_cast<const char16_t*>(buffer), length);
    ::LocalFree(buffer);
    // The system ends its texts with a line end, some of them with a blank before it.
    while (!text.empty() && (text.back() == u'\r' || text.back() == u'\n' || text.back() == u' '))
        text.pop_back();
    return text;
}

Error LastSystemError() {
    return {SystemErrorText(::GetLastError())};
}

namespace {

// Asks the kernel. The documented call hides versions that are newer than those in the program's manifest.
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

// The arguments of main() are in the system's code page, which lacks characters that file names may have.
std::vector<KelText> ProgramArguments(int, const char* const*) {
    int count = 0;
    LPWSTR* const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<KelText> words;
    for (int index = 1; arguments != nullptr && index < count; ++index) {
        const std::wstring_view word = arguments[index];
        words.emplace_back(word.begin(), word.end());
    }
    ::LocalFree(arguments);
    return words;
}

std::optional<KelText> TypedCommandLine() {
    const std::wstring_view typed = ::GetCommandLineW();
    return KelText(typed.begin(), typed.end());
}

std::optional<std::filesystem::path> PathFromEnvironment(const char* name) {
    // One more than the longest variable has.
    constexpr DWORD bufferUnits = 32768;
    const std::string_view ascii = name;
    std::wstring value(bufferUnits, L'\0');
    const DWORD length =
        ::GetEnvironmentVariableW(std::wstring(ascii.begin(), ascii.end()).c_str(), value.data(), bufferUnits);
    if (length == 0 || length >= bufferUnits)
        return std::nullopt;
    value.resize(length);
    return value;
}

bool IsInputTerminal() {
    DWORD mode = 0;
    return ::GetConsoleMode(::GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

// Windows gives no handle the number of a closed stream.
void SecureStandardStreams() {}

void PrepareOutput() {
    constexpr int binary = 0x8000; // _O_BINARY: its header is allowed in the sources of POSIX alone
    (void)::_setmode(::_fileno(stdout), binary);
}

}
