#pragma once
// From the arguments of main() to an engine: what the programs of a machine have in common. Desktop program, service,
// tests and benchmarks put an engine together here and nowhere else.

#include "base/Clock.h"
#include "base/Result.h"
#include "engine/DownloadApp.h"
#include "files/Installation.h"
#include "messages/MessageReport.h"
#include "port/PortNames.h"

#include <memory>
#include <optional>

namespace tarvin {

class EngineEvents;
struct ProgramStart;

class Program {
public:
    // From the arguments of main(). Prints usage or version if the command line asks for it. Says on standard error why
    // a program cannot start.
    static ProgramStart Begin(int argumentCount, const char* const* arguments, const char* programName,
                              const char* usage);

    // For the machine that the command line names.
    Program(Installation installation, KelText commandLine);

    const Installation& Place() const { return installation; }
    // The clock of its engines.
    const Clock& EngineClock() const { return clock; }
    const KelText& MachineName() const { return machineName; }
    // The folder for files that programs of several machines must not share. It need not exist.
    std::filesystem::path MachineFolder() const;

    // Loads the texts in the user's language: the one that the command line names, else that of the machine's settings,
    // else `systemLanguage`. Success without a dictionary too; one that is there but cannot be used is a failure.
    Result<> LoadDictionary(const KelText& systemLanguage = {}) const;

    // The engine must not outlive the program, and the program must not be moved meanwhile.
    std::unique_ptr<DownloadApp> MakeEngine(EngineEvents& events) const;

private:
    Installation installation;
    KelText commandLine;
    KelText machineName;
    PortNames portNames;
    SteadyClock clock;
};

// What a program does after Begin.
struct ProgramStart {
    // To run. None if the program ends here.
    std::optional<Program> program = {};
    int exitCode = 0; // without a program
    // Without a program: for a program with a window to show.
    std::optional<MessageBoxText> problem = {};
};

// The installation that the environment and the conventions of the system lead to, or the reason why there is none.
Result<Installation> FindProgramInstallation();

// The machine that the command line names; "TARVIN" without a name.
KelText MachineNameOf(KelTextView commandLine);

}
