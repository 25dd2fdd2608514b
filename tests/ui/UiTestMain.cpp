// The toolkit's loop runs on the main thread, as in the program. The tests act as the user on a thread of their own.
#define DOCTEST_CONFIG_IMPLEMENT
#include "ui/Wx.h"

#include <algorithm>
#include <atomic>
#include <iostream>
#include <string_view>
#include <thread>

#include <doctest/doctest.h>

namespace {

std::atomic<int> failedAsserts = 0;

// In place of the toolkit's box, which would wait for an answer.
void CountFailedAssert(const wxString& file, int line, const wxString& function, const wxString& condition,
                       const wxString& message) {
    ++failedAsserts;
    std::cerr << file << ":" << line << ": " << function << ": " << condition << ": " << message << std::endl;
}

class TestApp : public wxApp {
public:
    explicit TestApp(doctest::Context& testContext) : context(testContext) { SetAppName("TarvinDL"); }

    bool OnInit() override { return true; }

    int OnRun() override {
        SetExitOnFrameDelete(false);
        int failures = 0;
        std::thread user([&] {
            failures = context.run();
            CallAfter([this] { ExitMainLoop(); });
        });
        MainLoop();
        user.join();
        return failures + failedAsserts;
    }

private:
    doctest::Context& context;
};

}

int main(int argumentCount, char** arguments) {
    doctest::Context context(argumentCount, arguments);
    const bool isListing = std::any_of(arguments + 1, arguments + argumentCount, [](std::string_view argument) {
        return argument.starts_with("--list") || argument.starts_with("--help") || argument.starts_with("--count");
    });
    if (isListing)
        return context.run();
    wxSetAssertHandler(CountFailedAssert);
    wxApp::SetInstance(new TestApp(context));
    int toolkitArgumentCount = 1;
    return wxEntry(toolkitArgumentCount, arguments);
}
