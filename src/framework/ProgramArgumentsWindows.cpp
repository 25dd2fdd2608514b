#include "framework/ProgramArguments.h"
#include "framework/WindowsApi.h"

#include <string_view>

#include <shellapi.h>

namespace tarvin {

// main() is given the words in the system's code page, which does not have all characters of a file's name.
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

}
