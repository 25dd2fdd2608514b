#include "base/WindowsApi.h"
#include "publish/Terminal.h"

namespace tarvin {

namespace {

// Not in the headers of an older system.
constexpr DWORD obeysSequences = 0x0004;

HANDLE endRequest = nullptr;

BOOL WINAPI OnConsoleEvent(DWORD) {
    ::SetEvent(endRequest);
    return TRUE;
}

class WindowsTerminal : public Terminal {
public:
    WindowsTerminal(HANDLE output, DWORD usualOutputMode)
        : output(output),
          input(::GetStdHandle(STD_INPUT_HANDLE)),
          usualOutputMode(usualOutputMode),
          usualCodePage(::GetConsoleOutputCP()) {
        ::SetConsoleOutputCP(CP_UTF8);
        endRequest = ::CreateEventW(nullptr, TRUE, FALSE, nullptr);
        ::SetConsoleCtrlHandler(OnConsoleEvent, TRUE);
        DWORD mode = 0;
        hasKeys = ::GetConsoleMode(input, &mode) != 0;
        (void)WindowsTerminal::Write(beginDrawing);
    }

    ~WindowsTerminal() override {
        (void)WindowsTerminal::Write(endDrawing);
        ::SetConsoleMode(output, usualOutputMode);
        ::SetConsoleOutputCP(usualCodePage);
        ::SetConsoleCtrlHandler(OnConsoleEvent, FALSE);
    }

    TableRoom Room() const override {
        CONSOLE_SCREEN_BUFFER_INFO screen = {};
        if (!::GetConsoleScreenBufferInfo(output, &screen))
            return {};
        return {screen.srWindow.Right - screen.srWindow.Left + 1, screen.srWindow.Bottom - screen.srWindow.Top + 1};
    }

    bool WaitForEnd(std::chrono::milliseconds longest) override {
        const HANDLE handles[] = {endRequest, input};
        const DWORD count = hasKeys ? 2 : 1;
        const DWORD ready = ::WaitForMultipleObjects(count, handles, FALSE, static_cast<DWORD>(longest.count()));
        if (ready == WAIT_OBJECT_0)
            return true;
        if (ready != WAIT_OBJECT_0 + 1)
            return false;
        // Besides keys come events of the mouse and of the window, which only make the table be drawn.
        INPUT_RECORD records[32] = {};
        DWORD recordCount = 0;
        if (!::ReadConsoleInputW(input, records, 32, &recordCount))
            return true;
        for (DWORD index = 0; index < recordCount; ++index) {
            const KEY_EVENT_RECORD& key = records[index].Event.KeyEvent;
            if (records[index].EventType == KEY_EVENT && key.bKeyDown != 0 &&
                (key.uChar.UnicodeChar == L'q' || key.uChar.UnicodeChar == L'Q'))
                return true;
        }
        return false;
    }

    bool Write(std::string_view text) override {
        DWORD written = 0;
        return ::WriteFile(output, text.data(), static_cast<DWORD>(text.size()), &written, nullptr) != 0;
    }

private:
    const HANDLE output;
    const HANDLE input;
    const DWORD usualOutputMode;
    const UINT usualCodePage;
    bool hasKeys = false;
};

}

std::unique_ptr<Terminal> Terminal::Open() {
    const HANDLE output = ::GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    // A console of Windows before version 10 knows no sequences.
    if (!::GetConsoleMode(output, &mode) || !::SetConsoleMode(output, mode | obeysSequences))
        return nullptr;
    return std::make_unique<WindowsTerminal>(output, mode);
}

}
