#pragma once
// The desktop program put together: one window for one machine, its engine, its help, and the messages between them.
// The program, its tests and the benchmarks all begin here. User-interface thread, unless a member says otherwise.

#include "app/Program.h"
#include "messages/AppInterface.h"
#include "publish/StatusPublisher.h"
#include "publish/WatchedMachine.h"
#include "ui/HelpBook.h"
#include "ui/ToolkitLog.h"
#include "ui/WindowEvents.h"

#include <cassert>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

namespace tarvin {

class MainWindow;

// Lets the texts of the window speak the language of this process's dictionary from now on. Call it once the dictionary
// is loaded, and before other threads run.
void SpeakDictionary();

class Desktop {
public:
    // Serve: the window has an engine of its own. Watch: it shows a machine that another program serves.
    enum class Role { Serve, Watch };

    // Makes everything and shows nothing yet. `program` outlives the desktop. The first of `helpFiles` that is there is
    // the help book. The texts are in the language that the user has chosen, else in `systemLanguage`, else English.
    Desktop(const Program& program, std::vector<std::filesystem::path> helpFiles, const KelText& systemLanguage = {},
            Role role = Role::Serve);
    // Stops the engine. The window must have been closed.
    ~Desktop();

    // Shows the window, and begins to serve the line or to watch.
    void Start();
    // Closes the window, soon. Any thread.
    void RequestClose();
    // Brings the window to the front, soon, and then calls `answer`. Drops it if the window is closed before. Any
    // thread.
    void RequestRaise(std::function<void()> answer);

    // Until it is closed.
    MainWindow& Window() { return *window; }
    // Requires Role::Serve.
    DownloadApp& Engine() {
        assert(engine);
        return *engine;
    }
    WindowEvents& Events() { return events; }

private:
    void MakeEngine(const Program& program);

    WindowEvents events;
    AppInterface messages;
    const ToolkitLog toolkitLog;
    HelpBook help;
    // A window that serves has the first two, and one that watches has the third.
    std::unique_ptr<StatusPublisher> publisher;
    std::unique_ptr<DownloadApp> engine;
    std::unique_ptr<WatchedMachine> watched;
    MainWindow* window; // destroys itself when it is closed
};

}
