#include "app/CommandLine.h"
#include "framework/WindowsApi.h"

namespace tarvin {

KelText CommandLineText(int, const char* const*) {
    const wchar_t* text = ::GetCommandLineW();
    // The program's own name, which quotes protect when it holds blanks.
    bool quoted = false;
    while (*text != L'\0' && (quoted || (*text != L' ' && *text != L'\t'))) {
        quoted = quoted != (*text == L'"');
        ++text;
    }
    const std::wstring rest = text;
    KelText line(rest.begin(), rest.end());
    const KelTextView trimmed = Trimmed(line);
    // A name in quotes means the name.
    const bool isQuoted = trimmed.size() >= 2 && trimmed.front() == u'"' && trimmed.find(u'"', 1) == trimmed.size() - 1;
    return KelText(isQuoted ? trimmed.substr(1, trimmed.size() - 2) : trimmed);
}

}
