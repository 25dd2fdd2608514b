#include "setup/SetupCommand.h"

#include "base/ProgramOutput.h"
#include "base/SetupMessages.h"
#include "base/Version.h"
#include "files/Installation.h"
#include "port/PortReport.h"
#include "protocol/TarvinApp.h"
#include "setup/InstallationFiles.h"
#include "setup/MachineCheck.h"
#include "setup/MachineSetup.h"
#include "setup/ReloadCommand.h"
#include "setup/ServiceUnits.h"
#include "setup/SetupOptions.h"
#include "setup/SetupQuestions.h"

#include <algorithm>
#include <iostream>

namespace tarvin {

namespace {

constexpr int failed = 1;
constexpr int wrongUsage = 2;

constexpr char usage[] = "Usage: tarvindl-setup [MACHINE] [OPTION...]\n"
                         "\n"
                         "Makes an installation and adds the machine, or changes it. Asks on a terminal\n"
                         "for what no option gives. Makes nothing twice. Without MACHINE and terminal: the\n"
                         "installation alone.\n"
                         "\n"
                         "  --port PORT          COM1 to COM256, or a device such as /dev/ttyUSB0\n"
                         "  --folder DIR         for files from and to the machine; made if it is missing\n"
                         "  --upload DIR         for files from the machine; --download DIR to the machine\n"
                         "  --extension EXT      of the files                    --speed N       in baud\n"
                         "  --controller KIND    \"by number\" or \"by hand\"        --language NAME\n"
                         "  --list-ports         the ports with maker, serial number and state\n"
                         "  --show               every setting of MACHINE, as a text profile\n"
                         "  --set NAME=VALUE     one setting by its name there; may be repeated\n"
                         "  --reload             the program that serves MACHINE reads the settings again\n"
                         "  --system             the system's installation, and files for systemd and udev\n"
                         "  --installation DIR   the one here; else that of TARVINDL_HOME or the user's\n"
                         "  --units DIR          writes the files for systemd and udev below DIR\n"
                         "  --yes                asks nothing\n"
                         "  --help               this text                       --version  the version\n"
                         "\n"
                         "Exit code: 0 all is done or was so already, 1 something could not be done,\n"
                         "2 wrong usage.\n";

class SetupCommand {
public:
    SetupCommand(SetupRequest request, const SetupConsole& console) : request(std::move(request)), console(console) {}

    int Run() {
        if (request.place.isSystem && !MayChangeSystem())
            return Fail(text::setup::notRoot);
        const auto folder = FolderFor(request.place);
        if (!folder)
            return Fail(folder.Reason().text);
        if (request.listsPorts) {
            console.output << ToUtf8(ListOfPorts(*folder / "KEL.INI"));
            return 0;
        }
        return IsForPresentMachine() ? RunForPresentMachine(*folder) : RunForNewMachine(*folder);
    }

private:
    // A misspelt name must not make a new machine.
    bool IsForPresentMachine() const { return request.showsSettings || request.reloads || !request.changes.empty(); }

    bool MayAsk() const { return console.isTerminal && !request.neverAsks; }

    void Warn(KelTextView reason) { console.errors << "tarvindl-setup: " << ToUtf8(reason) << '\n'; }

    int Fail(KelTextView reason) {
        Warn(reason);
        return failed;
    }

    void Say(KelTextView line) { console.output << ToUtf8(line) << '\n'; }

    void Say(const SetupReport& report) {
        for (const KelText& line : report)
            Say(line);
    }

    int RunForPresentMachine(const std::filesystem::path& folder) {
        const auto installation = Installation::Read(folder);
        if (!installation)
            return Fail(installation.Reason().text);
        if (request.machine.empty())
            request.machine = TarvinApp::defaultMachineName;
        if (!IsMachine(*installation, request.machine)) {
            const auto file = StoreOf(*installation, request.machine).FilePath();
            return Fail(Filled(text::setup::machineUnknown, {request.machine, FromPath(file)}));
        }
        if (request.showsSettings)
            return Show(*installation);
        if (HasWishes()) {
            if (const int code = SetUp(*installation); code != 0)
                return code;
            WarnOfMissingPort(*installation);
        }
        return request.reloads ? Reload(*installation) : SayReloadNeeded(*installation);
    }

    int Show(const Installation& installation) {
        const auto shown = ShowSettings(installation, request.machine);
        if (!shown)
            return Fail(shown.Reason().text);
        console.output << ToUtf8(shown->profile);
        return shown->damage ? Fail(*shown->damage) : 0;
    }

    int RunForNewMachine(const std::filesystem::path& folder) {
        // Everything is asked and tried before the first file is made.
        const auto planned = PlannedInstallation(folder);
        if (!planned)
            return Fail(planned.Reason().text);
        if (const auto ready = CompleteRequest(*planned); !ready)
            return Fail(ready.Reason().text);
        const auto made = MakeInstallation(folder);
        if (!made)
            return Fail(made.Reason().text);
        Say(*made);
        const auto installation = Installation::Read(folder);
        if (!installation)
            return Fail(installation.Reason().text);
        if (request.machine.empty())
            return 0;
        if (const int code = SetUp(*installation); code != 0)
            return code;
        console.output << ToUtf8(DescribeFindings(CheckMachine(*installation, request.machine)));
        if (IsForService(*installation))
            Say(Filled(text::setup::checkAsService, {request.machine}));
        return SayReloadNeeded(*installation);
    }

    // Asks for what the options have left open, if it may, and tries the result.
    Result<> CompleteRequest(const Installation& planned) {
        if (request.machine.empty() && MayAsk()) {
            auto name = AskForName(console.input, console.output);
            if (!name)
                return name.Reason();
            request.machine = std::move(*name);
        }
        if (request.machine.empty() && HasWishes())
            request.machine = TarvinApp::defaultMachineName;
        if (request.machine.empty())
            return {};
        // Options that are refused need no answers.
        if (const auto tried = TryMachine(planned, Wish()); !tried)
            return tried;
        if (!IsMachine(planned, request.machine)) {
            if (MayAsk()) {
                if (auto asked = AskForMachine(request, planned, console.input, console.output); !asked)
                    return asked;
            }
            if (!request.port)
                return Error{Filled(text::setup::noPort, {u"\n" + ListOfPorts(planned.PathsFile())})};
        }
        return TryMachine(planned, Wish());
    }

    bool HasWishes() const { return request.port || !request.choices.empty() || !request.changes.empty(); }

    MachineWish Wish() const {
        MachineWish wish = {request.machine, request.port, request.choices, request.folders};
        wish.settings.insert(wish.settings.end(), request.changes.begin(), request.changes.end());
        return wish;
    }

    int SetUp(const Installation& installation) {
        // A change replaces the damaged file, which stays beside it.
        if (const auto damage = DamageOfSettings(installation, request.machine))
            Warn(*damage);
        const auto done = SetUpMachine(installation, Wish());
        if (!done)
            return Fail(done.Reason().text);
        Say(done->report);
        hasChanged = done->hasChanged;
        return WriteUnitFiles(installation);
    }

    static bool IsForService(const Installation& installation) {
        const auto system = SystemInstallation();
        return system && installation.Folder() == *system && MayChangeSystem();
    }

    int WriteUnitFiles(const Installation& installation) {
        if (!request.units && !IsForService(installation))
            return 0;
        const UnitPlaces places = request.units ? UnitPlaces{*request.units, false} : UnitPlaces();
        const auto written = WriteUnits(installation, request.machine, places);
        if (!written)
            return Fail(written.Reason().text);
        Say(*written);
        return 0;
    }

    // A device may come later, so this is no refusal.
    void WarnOfMissingPort(const Installation& installation) {
        const auto changesPort = [](const NamedValue& each) { return EqualIgnoringCase(each.name, u"port"); };
        if (!request.port && std::ranges::none_of(request.changes, changesPort))
            return;
        const KelText port = StoreOf(installation, request.machine).Load(TarvinApp::FirstSettings()).settings.port;
        const PortReport report = InspectPort(installation.PathsFile(), port);
        if (report.device.empty())
            Warn(Filled(text::check::noDevice, {port, request.machine}));
        else if (report.state == PortState::NotThere)
            Warn(Filled(text::setup::portAway, {port, DescribeState(report)}));
    }

    int Reload(const Installation& installation) {
        const ReloadReply reply = RequestReload(installation, request.machine);
        if (!reply.isWell)
            return Fail(reply.text);
        Say(reply.text);
        return 0;
    }

    int SayReloadNeeded(const Installation& installation) {
        const auto needed = ReloadNeeded(installation, request.machine);
        if (hasChanged && needed)
            Say(*needed);
        return 0;
    }

    SetupRequest request;
    const SetupConsole& console;
    bool hasChanged = false;
};

}

int RunSetupCommand(std::span<const KelText> words, const SetupConsole& console) {
    const auto end = [&console](int exitCode) {
        return EndOutput(console.output, console.errors, "tarvindl-setup", exitCode);
    };
    for (const KelText& word : words) {
        if (word == u"--help") {
            console.output << usage;
            return end(0);
        }
        if (word == u"--version") {
            console.output << "tarvindl-setup " << programVersion << '\n';
            return end(0);
        }
    }
    auto request = ReadSetupOptions(words);
    if (!request) {
        console.errors << "tarvindl-setup: " << ToUtf8(request.Reason().text) << ". See tarvindl-setup --help\n";
        return wrongUsage;
    }
    return end(SetupCommand(std::move(*request), console).Run());
}

}
