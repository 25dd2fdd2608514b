#include "base/WindowsApi.h"
#include "files/Installation.h"

#include <doctest/doctest.h>

using namespace tarvin;

// The event log shows a line by the message table of the program's file.
TEST_CASE("Event table: the message of the service is its line") {
    const HMODULE program =
        ::LoadLibraryExW((*ProgramFolder() / "tarvindl-service.exe").c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    REQUIRE(program != nullptr);
    wchar_t line[] = L"50% of \u00E4ll";
    wchar_t* lines[] = {line};
    wchar_t text[100] = L"";
    ::FormatMessageW(FORMAT_MESSAGE_FROM_HMODULE | FORMAT_MESSAGE_ARGUMENT_ARRAY, program, 1, 0, text, 100,
                     reinterpret_cast<va_list*>(lines));
    CHECK(std::wstring_view(text) == L"50% of \u00E4ll\r\n");
    ::FreeLibrary(program);
}
