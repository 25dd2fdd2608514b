#include "publish/StatusCommand.h"

#include "base/ProgramOutput.h"
#include "base/Version.h"
#include "files/FileNames.h"
#include "files/Installation.h"
#include "publish/StatusOutput.h"
#include "publish/StatusTable.h"
#include "publish/Terminal.h"

#include <algorithm>
#include <cstdlib>
#include <ostream>
#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto tablePeriod = 500ms;
constexpr auto linesPeriod = 2s;

constexpr const char* program = "tarvindl-status";

constexpr char help[] = "Usage: tarvindl-status [OPTION] [MACHINE...]\n"
                        "\n"
                        "Tells the state of each machine in one line: what it does, the file on its way,\n"
                        "the percentage, the rate, errors and repeats, and since when. Without names: all\n"
                        "machines of the installation, and all whose status this user may read. A name\n"
                        "with blanks needs quotes.\n"
                        "\n"
                        "  --json     an array with all that is known, for scripts\n"
                        "  --watch    goes on: a live table on a terminal (q ends it), otherwise lines\n"
                        "             with their time every 2 seconds\n"
                        "  --help     this text\n"
                        "  --version  the version\n"
                        "\n"
                        "States: ready, preparing, sending, receiving, held, silent, failed, no link, not\n"
                        "running, died (without an orderly end), unknown.\n"
                        "\n"
                        "Exit code, the highest of all machines: 0 all is well; 1 a failure that no user\n"
                        "has seen, or a hold or silence over the machine's limit; 2 no link, or not\n"
                        "served by a program; 3 not known, wrong usage, or output not written.\n"
                        "\n"
                        "The installation is the folder named by TARVINDL_HOME, or else the first that\n"
                        "holds KEL.INI: the program's own, the user's, the system's. TARVINDL_RUNTIME\n"
                        "names a further folder with published states.\n";

struct Request {
    bool wantsJson = false;
    bool wantsWatch = false;
    std::vector<KelText> names;
};

Result<Request> ReadOptions(std::span<const KelText> arguments) {
    Request request;
    bool areNames = false;
    for (const KelText& word : arguments) {
        if (areNames || !word.starts_with(u"--"))
            request.names.push_back(word);
        else if (word == u"--")
            areNames = true;
        else if (word == u"--json")
            request.wantsJson = true;
        else if (word == u"--watch")
            request.wantsWatch = true;
        else
            return Error{u"unknown option: " + word};
    }
    if (request.wantsJson && request.wantsWatch)
        return Error{u"--json and --watch exclude each other"};
    return request;
}

// One look at the machines that the user has asked for.
struct Look {
    std::vector<ShownMachine> machines;
    std::vector<KelText> unknownNames;
    Present present;
    int exitCode = allWell;
};

bool IsNamed(const KelText& machine, const KelText& name, bool ignoresCase) {
    // Names that give the same file name mean the same machine.
    const KelText left = FileNameFor(machine);
    const KelText right = FileNameFor(name);
    return ignoresCase ? EqualIgnoringCase(left, right) : left == right;
}

Look LookAt(const Request& request) {
    Look look;
    look.present = PresentOf(SteadyClock());
    const auto installation = FindInstallation();
    auto known = FindMachines(installation ? std::optional(*installation) : std::nullopt, look.present);
    const auto add = [&](const KnownMachine& machine) {
        look.machines.push_back({machine, Summarise(machine, look.present)});
        look.exitCode = std::max(look.exitCode, look.machines.back().summary.exitCode);
    };
    const auto addNamed = [&](const KelText& name, bool ignoresCase) {
        bool isFound = false;
        for (const KnownMachine& machine : known) {
            if (!IsNamed(machine.name, name, ignoresCase))
                continue;
            add(machine);
            isFound = true;
        }
        return isFound;
    };
    if (request.names.empty())
        std::for_each(known.begin(), known.end(), add);
    for (const KelText& name : request.names) {
        if (!addNamed(name, false) && !addNamed(name, true))
            look.unknownNames.push_back(name);
    }
    if (look.machines.empty() || !look.unknownNames.empty())
        look.exitCode = notKnown;
    return look;
}

void TellUnknown(const Look& look, std::ostream& errors) {
    for (const KelText& name : look.unknownNames)
        errors << "tarvindl-status: no machine is known by the name " << ToUtf8(Printable(name)) << ".\n";
    if (look.machines.empty() && look.unknownNames.empty())
        errors << "tarvindl-status: no machine is known: there is no installation with settings, and no program "
                  "publishes its status where this user may read it.\n";
}

std::string Frame(const Look& look, const TableRoom& room, bool hasColour) {
    std::string frame = "\x1b[H";
    const auto lines = TableOf(look.machines, look.present, room);
    for (const TableLine& line : lines) {
        const char* const colour = line.exitCode >= notServed ? "\x1b[31m" : "\x1b[33m";
        const bool isColoured = hasColour && line.exitCode != allWell;
        // Each line replaces the one that stands there, so nothing flickers. A line end after the last one would
        // scroll.
        frame += (isColoured ? colour : "") + line.text + (isColoured ? "\x1b[0m" : "") + "\x1b[K";
        if (&line != &lines.back())
            frame += "\r\n";
    }
    return frame + "\x1b[J";
}

int WatchTable(const Request& request, Terminal& terminal) {
    const bool hasColour = std::getenv("NO_COLOR") == nullptr;
    for (;;) {
        const Look look = LookAt(request);
        if (!terminal.Write(Frame(look, terminal.Room(), hasColour)) || terminal.WaitForEnd(tablePeriod))
            return look.exitCode;
    }
}

// Ends when the reader has left, or by a signal.
int WatchLines(const Request& request, std::ostream& output, std::ostream& errors) {
    for (;;) {
        const Look look = LookAt(request);
        for (const ShownMachine& shown : look.machines)
            output << SinceText(look.present.system, look.present) << ' ' << LineOf(shown, look.present) << '\n';
        const int exitCode = EndOutput(output, errors, program, look.exitCode, notKnown);
        if (!output)
            return exitCode;
        std::this_thread::sleep_for(linesPeriod);
    }
}

int Watch(const Request& request, std::ostream& output, std::ostream& errors) {
    // A name that is wrong would show as an empty table.
    const Look first = LookAt(request);
    TellUnknown(first, errors);
    if (first.machines.empty())
        return notKnown;
    const auto terminal = Terminal::Open();
    return terminal ? WatchTable(request, *terminal) : WatchLines(request, output, errors);
}

}

int RunStatusCommand(std::span<const KelText> arguments, std::ostream& output, std::ostream& errors) {
    const auto isGiven = [&](KelTextView option) {
        return std::find(arguments.begin(), arguments.end(), option) != arguments.end();
    };
    if (isGiven(u"--help")) {
        output << help;
        return EndOutput(output, errors, program, allWell, notKnown);
    }
    if (isGiven(u"--version")) {
        output << program << ' ' << programVersion << '\n';
        return EndOutput(output, errors, program, allWell, notKnown);
    }
    const auto request = ReadOptions(arguments);
    if (!request) {
        errors << "tarvindl-status: " << ToUtf8(request.Reason().text)
               << ".\ntarvindl-status --help tells the options.\n";
        return notKnown;
    }
    if (request->wantsWatch)
        return Watch(*request, output, errors);
    const Look look = LookAt(*request);
    if (request->wantsJson)
        output << JsonOf(look.machines, look.present);
    for (const ShownMachine& shown : look.machines) {
        if (!request->wantsJson)
            output << LineOf(shown, look.present) << '\n';
    }
    const int exitCode = EndOutput(output, errors, program, look.exitCode, notKnown);
    TellUnknown(look, errors);
    return exitCode;
}

}
