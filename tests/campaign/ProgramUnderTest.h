#pragma once
// The service that a campaign runs, in an installation of its own, at one end of a pseudo-terminal. Any build of the
// service will do, also an older one. Failures throw. One thread.

#include "campaign/SettingsBytes.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace tarvin::campaign {

// The word of the program on a transfer: the last line of its activity log that ends one.
enum class ProgramWord { None, Completed, Errors };

class ProgramUnderTest {
public:
    struct Options {
        std::string program; // a path, or the name of one of the project's programs
        // None leaves the setting to the program, which may not know it.
        std::optional<IncomingCheck> check;
        std::string flowControl = "None";
    };

    explicit ProgramUnderTest(const Options& options);

    // Starts the program on a new line and waits until its port is open.
    void Start();
    // Ends the program in order, or kills it if it does not end. Returns how it ended, in words; empty if in order.
    std::string Stop();

    // The controller's end of the line. Changes with each Start.
    int LineDescriptor() const { return terminal->Descriptor(); }
    std::filesystem::path NcFolder() const { return installation.NcFolder(); }

    // Forgets the words so far.
    void ForgetWords();
    // The last word since ForgetWords. Waits a moment for `expected`: log lines come a little after their answers.
    ProgramWord LastWord(ProgramWord expected) const;
    // The lines of the activity log since ForgetWords.
    std::string Words() const;

private:
    test::TemporaryInstallation installation;
    const std::string program;
    std::unique_ptr<test::PseudoTerminal> terminal;
    std::unique_ptr<test::ChildProcess> service;
    std::size_t forgottenBytes = 0;
};

}
