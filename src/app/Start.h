#pragma once
// From a command line to a running engine: what every program of the machine does before its window appears. Knows
// nothing of windows.

#include "base/Clock.h"
#include "files/Installation.h"
#include "messages/MessageReport.h"
#include "port/PortNames.h"
#include "protocol/TarvinApp.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvin {

// The installation and what it names; the engine that is made of it must not outlive it.
class Start {
public:
    // None if there is no installation, with the reason in `reason`.
    static std::optional<Installation> FindPaths(KelText& reason);

    // What the command line names, or the name that a machine has without one.
    static KelText MachineName(KelTextView commandLine);

    // Texts in the user's language, where there is a dictionary. One that is there and no good is told.
    static void LoadDictionary(const Installation& programPaths, const KelText& commandLine,
                               const std::function<void(const MessageBoxText&)>& reportFailure);

    // The machine's own folder, which need not exist: for files that programs of several machines must not share.
    static std::filesystem::path MachineFolder(const Installation& programPaths, KelTextView machineName);

    Start(const Installation& programPaths, DownloadWindow& downloadWindow);

    std::unique_ptr<TarvinApp> MakeEngine(KelText machineName) const;

private:
    Installation paths;
    PortNames portNames;
    SteadyClock clock;
    DownloadWindow& window;
};

}
