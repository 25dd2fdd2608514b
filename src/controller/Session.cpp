#include "controller/Session.h"

#include "base/ProgramOutput.h"
#include "controller/CommandRunner.h"
#include "controller/NcLines.h"

#include <cassert>
#include <ostream>

namespace tarvin::controller {

namespace {

bool ReadsFile(const Command& command) {
    return command.kind == Command::Kind::Put || command.kind == Command::Kind::Check;
}

using Lines = std::vector<std::string>;

// One entry for each command, empty if it reads no file.
Result<std::vector<Lines>> ReadFiles(const std::vector<Command>& commands) {
    std::vector<Lines> files;
    for (const Command& command : commands) {
        auto lines = ReadsFile(command) ? ReadNcLines(command.file) : Lines();
        if (!lines)
            return lines.Reason();
        files.push_back(std::move(*lines));
    }
    return files;
}

// Reports a failure before the line is open.
int FailEarly(std::ostream& errors, int status, const std::string& reason) {
    errors << "tarvin-controller: " << reason << std::endl;
    return status;
}

int Fail(std::ostream& output, const std::string& what, const std::string& reason) {
    output << what << ": FAILED: " << reason << std::endl;
    return ExitStatus::failed;
}

}

int RunCommands(const ControllerOptions& options, std::span<const Lines> files, ControllerLine& line,
                const Clock& clock, std::ostream& output) {
    assert(!options.commands.empty() && files.size() == options.commands.size());
    MessageLink link(line, clock,
                     {options.misbehaviour, options.delayBeforeMessages, options.traces ? &output : nullptr});
    Conversation conversation(line, link, clock, options.conversation);
    if (options.connects) {
        if (const Outcome outcome = conversation.Connect(options.connectTime); !outcome.IsRight())
            return Fail(output, "connect", outcome.reason);
    }
    link.AllowMisbehaviour();
    CommandRunner runner(conversation, link, clock);
    int status = ExitStatus::right;
    for (std::size_t index = 0; index < options.commands.size(); ++index) {
        const Command& command = options.commands[index];
        if (command.kind == Command::Kind::Stay)
            output << "stay: until the program closes the line" << std::endl;
        const Outcome outcome = runner.Run(command, files[index]);
        output << runner.Report(command, outcome) << std::endl;
        if (outcome.kind == Outcome::Kind::Failed)
            return ExitStatus::failed;
        if (outcome.kind == Outcome::Kind::Stopped)
            status = ExitStatus::stopped;
    }
    // After "send" the program may still answer, so silence is not required.
    if (options.commands.back().kind == Command::Kind::Send)
        return status;
    if (const Outcome outcome = conversation.End(); !outcome.IsRight())
        return Fail(output, "end", outcome.reason);
    return status;
}

int RunController(std::span<const std::string> arguments, std::string_view version, std::ostream& output,
                  std::ostream& errors) {
    const auto options = ParseCommandLine(arguments);
    if (!options)
        return FailEarly(errors, ExitStatus::usage, ToUtf8(options.Reason().text) + "; see --help");
    if (options->wantsHelp || options->wantsVersion) {
        if (options->wantsHelp)
            output << helpText;
        else
            output << "tarvin-controller " << version << '\n';
        return EndOutput(output, errors, "tarvin-controller", ExitStatus::right, ExitStatus::failed);
    }
    // Read before the line is opened: a program must not wait for a controller with a wrong command line.
    const auto files = ReadFiles(options->commands);
    if (!files)
        return FailEarly(errors, ExitStatus::usage, ToUtf8(files.Reason().text));
    const auto line = options->device.empty() ? MakePseudoTerminal(options->pseudoTerminalLink)
                                              : OpenDevice(options->device, options->bitsPerSecond);
    if (!line)
        return FailEarly(errors, ExitStatus::failed, ToUtf8(line.Reason().text));
    return RunCommands(*options, *files, **line, SteadyClock(), output);
}

}
