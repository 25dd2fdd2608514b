#pragma once
// The desktop program put together: one window for one machine, its engine, its help, and the messages between them.
// The program, its tests and the benchmarks all begin here. User-interface thread, unless a member says otherwise.

#include "app/Program.h"
#include "messages/AppInterface.h"
#include "publish/StatusPublisher.h"
#include "ui/HelpBook.h"
#include "ui/ToolkitLog.h"
#include "ui/WindowEvents.h"

#include <filesystem>
#include <functional>
#include <vector>

namespace tarvin {

class MainWindow;

// Lets the texts of the window speak the language of this process's dictionary from now on. Call it once the dictionary
// is loaded, and before other threads run.
void SpeakDictionary();

class Desktop {
public:
    // Makes everything and shows nothing yet. `program` outlives the desktop. The first of `helpFiles` that is there is
    // the help book. The texts are in the language that the user has chosen, else in `systemLanguage`, else English.
    Desktop(const Program& program, std::vector<std::filesystem::path> helpFiles, const KelText& systemLanguage = {});
    // Stops the engine. The window must have been closed.
    ~Desktop();

    // Shows the window and begins to serve the line.
    void Start();
    // Closes the window, soon. Any thread.
    void RequestClose();
    // Brings the window to the front, soon, and then calls `answer`. Drops it if the window is closed before. Any
    // thread.
    void RequestRaise(std::function<void()> answer);

    // Until it is closed.
    MainWindow& Window() { return *window; }
    DownloadApp& Engine() { return *engine; }
    WindowEvents& Events() { return events; }

private:
    WindowEvents events;
    AppInterface messages;
    const ToolkitLog toolkitLog;
    HelpBook help;
    StatusPublisher publisher;
    const std::unique_ptr<DownloadApp> engine;
    MainWindow* window; // destroys itself when it is closed
};

}
