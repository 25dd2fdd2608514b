#include "app/CommandLine.h"
#include "framework/WindowsApi.h"

#include <shellapi.h>

namespace tarvin {

KelText CommandLineText(int, const char* const*) {
    int count = 0;
    wchar_t** const arguments = ::CommandLineToArgvW(::GetCommandLineW(), &count);
    std::vector<KelText> words;
    for (int index = 1; index < count; ++index) {
        const std::wstring word = arguments[index];
        words.emplace_back(word.begin(), word.end());
    }
    ::LocalFree(arguments);
    return JoinWords(words);
}

}
