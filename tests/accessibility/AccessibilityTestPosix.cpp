// The running program as a screen reader finds it, on a session bus and an accessibility bus of the test's own.
#include "AccessibleTree.h"
#include "harness/ChildProcessPosix.h"
#include "harness/PseudoTerminalPosix.h"
#include "harness/TemporaryInstallation.h"
#include "harness/WaitUntil.h"
#include "history/HistoryDatabase.h"

#include <csignal>
#include <cstdlib>
#include <functional>
#include <optional>
#include <utility>

#include <doctest/doctest.h>

namespace tarvin::test {

namespace {

// The bus starts the services of accessibility by itself when they are asked for.
class SessionBus {
public:
    explicit SessionBus(const std::filesystem::path& runtimeFolder)
        : daemon("/usr/bin/dbus-daemon",
                 {{"--session", "--nofork", "--print-address"}, {{"XDG_RUNTIME_DIR", runtimeFolder.string()}}}) {
        ::setenv("XDG_RUNTIME_DIR", runtimeFolder.c_str(), 1);
        ::setenv("DBUS_SESSION_BUS_ADDRESS", daemon.ReadLine().c_str(), 1);
        // The display's environment keeps the programs of other tests from the bus.
        ::unsetenv("NO_AT_BRIDGE");
    }

private:
    ChildProcess daemon;
};

class SeenProgram {
public:
    SeenProgram() : bus(folder.Path()) {
        std::filesystem::permissions(folder.Path(), std::filesystem::perms::owner_all);
        folder.WriteFile("NC/4711.nc", "(BRACKET)\nG0\n");
        // A theme whose buttons are as low as their text: the program sees to their height itself.
        std::filesystem::create_directories(folder / "gtk-3.0");
        folder.WriteFile("gtk-3.0/gtk.css", "button { padding: 0; min-height: 0; border: 0 }\n");
        ::setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
    }
    ~SeenProgram() {
        if (program) {
            program->Signal(SIGTERM);
            program->WaitForExit();
        }
    }

    void AddFailure() {
        TransferRecord failure;
        failure.machine = u"LASER";
        failure.number = u"4711";
        failure.outcome = TransferOutcome::Failed;
        failure.end = failure.begin = std::chrono::system_clock::now();
        failure.reason = u"the port was lost";
        HistoryDatabase history(folder / "history.db");
        const HistoryChange changes[] = {failure};
        REQUIRE(history.Apply(changes));
    }

    void Connect() {
        terminal.emplace();
        terminal->HoldDevice();
        std::filesystem::create_symlink(terminal->Device(), folder / "line");
    }

    void Disconnect() {
        std::filesystem::remove(folder / "line");
        terminal.reset();
    }

    void Start() {
        program.emplace("tarvindl", ChildProcess::Options{{"LASER"}, {{"TARVINDL_HOME", folder.Path().string()}}});
        atspi_init();
    }

    // Waits until the window is as the condition wants it. Fails the test with its tree otherwise.
    Accessible Window(const std::string& title, const std::function<bool(const Accessible&)>& condition) {
        std::optional<Accessible> window;
        const bool isThere = WaitUntil([&] {
            window = ReadWindow("tarvindl", title);
            return window && condition(*window);
        });
        INFO(title, ":\n", window ? window->Text() : "is not there\n", program->Output());
        REQUIRE(isThere);
        return *window;
    }
    Accessible Window(const std::string& title) {
        return Window(title, [](const Accessible&) { return true; });
    }

    TemporaryInstallation folder;

private:
    SessionBus bus;
    std::optional<PseudoTerminal> terminal;
    std::optional<ChildProcess> program;
};

using RoleAndName = std::pair<std::string, std::string>;

void CheckWindow(const Accessible& window, const std::vector<RoleAndName>& wanted) {
    for (const std::string& complaint : Complaints(window))
        FAIL_CHECK(complaint);
    for (const RoleAndName& each : wanted) {
        const auto& role = each.first;
        const auto& name = each.second;
        INFO(role, " \"", name, "\" in\n", window.Text());
        CHECK(window.Find(role, name) != nullptr);
    }
}

void CheckTargets(const Accessible& window, const std::vector<RoleAndName>& targets) {
    constexpr int least = 32;
    for (const RoleAndName& each : targets) {
        const auto& role = each.first;
        const auto& name = each.second;
        const Accessible* const target = window.Find(role, name);
        INFO(role, " \"", name, "\" in\n", window.Text());
        REQUIRE(target != nullptr);
        CHECK(target->height >= least);
        CHECK(target->width >= least);
    }
}

}

TEST_CASE("Accessibility: the main window says what it shows, also about a failure") {
    SeenProgram seen;
    seen.AddFailure();
    seen.Connect();
    seen.Start();
    const Accessible window = seen.Window("LASER", [](const Accessible& each) {
        const Accessible* const board = each.Find("panel", "Board");
        return board != nullptr && board->description.find("the port was lost") != std::string::npos &&
               board->Find("push button", "Seen") != nullptr && each.Find("label", "Waiting...") != nullptr;
    });
    CheckWindow(window, {{"panel", "Status"},
                         {"push button", "What to Do"},
                         {"label", "CTS Hold"},
                         {"label", "Heed"},
                         {"check box", "Heed CTS"},
                         {"check box", "Heed DSR"}});
    CheckTargets(window, {{"push button", "Change Settings"},
                          {"push button", "Test"},
                          {"push button", "Close"},
                          {"push button", "More..."},
                          {"push button", "Help"},
                          {"push button", "Seen"},
                          {"push button", "What to Do"},
                          {"check box", "Log"},
                          {"check box", "View"}});
    for (const char* const name : {"Rx", "Tx", "CTS Hold", "DSR Hold", "RLS Hold", "XOff Hold", "XOff Sent"}) {
        const Accessible* const lamp = window.Find("image", name);
        REQUIRE_MESSAGE(lamp != nullptr, name);
        CHECK_MESSAGE(lamp->description.starts_with(std::string(name) + ": off."), lamp->description);
    }
    const Accessible* const bar = window.Find("progress bar", "Progress");
    REQUIRE(bar != nullptr);
    CHECK(bar->value == 0);

    const Accessible* const view = window.Find("check box", "View");
    REQUIRE(view != nullptr);
    CHECK(!view->isChecked);
    REQUIRE(view->Press());
    const Accessible withTraffic = seen.Window("LASER", [](const Accessible& each) {
        const Accessible* const box = each.Find("check box", "View");
        return box != nullptr && box->isChecked && each.Find("panel", "Traffic") != nullptr;
    });
    CheckWindow(withTraffic, {});
}

TEST_CASE("Accessibility: dialogs and boxes say what each field is") {
    SeenProgram seen;
    seen.AddFailure();
    seen.Connect();
    seen.Start();
    const auto press = [&seen](const std::string& role, const std::string& name) {
        const Accessible window = seen.Window("LASER", [&](const Accessible& each) {
            const Accessible* const found = each.Find(role, name);
            return found != nullptr && found->isEnabled;
        });
        REQUIRE(window.Find(role, name)->Press());
    };
    press("push button", "Change Settings");
    const Accessible settings = seen.Window("Download Settings");
    CheckWindow(settings, {{"combo box", "Port"},
                           {"combo box", "Baud Rate"},
                           {"spin button", "Line Delay (milliseconds)"},
                           {"page tab list", "Pages of the settings"}});
    CheckTargets(settings, {{"push button", "OK"}, {"push button", "Cancel"}});
    const Accessible* const pages = settings.Find("page tab list", "Pages of the settings");
    REQUIRE(pages != nullptr);
    const RoleAndName others[] = {{"text", "Upload Path"}, {"spin button", "Keep History (years, 0: for ever)"}};
    for (int page = 1; page <= 2; ++page) {
        const auto& role = others[page - 1].first;
        const auto& name = others[page - 1].second;
        REQUIRE(pages->SelectChild(page));
        CheckWindow(
            seen.Window("Download Settings", [&](const Accessible& each) { return each.Find(role, name) != nullptr; }),
            {});
    }
    REQUIRE(settings.Find("push button", "Cancel")->Press());
    const auto choose = [&](const std::string& item) {
        press("push button", "More...");
        // An open menu is a window without a title.
        const Accessible menu =
            seen.Window("", [&](const Accessible& each) { return each.Find("menu item", item) != nullptr; });
        REQUIRE(menu.Find("menu item", item)->Press());
    };
    choose("Files for the Machine...");
    const Accessible files = seen.Window(
        "Files for the Machine", [](const Accessible& each) { return each.Find("table cell", "4711") != nullptr; });
    CheckWindow(files, {{"text", "Number or comment holds"}, {"table cell", "(BRACKET)"}});
    CheckTargets(files, {{"push button", "Read Again"}, {"push button", "Close"}});
    REQUIRE(files.Find("push button", "Close")->Press());

    choose("About TarvinDL...");
    const Accessible about = seen.Window(
        "About TarvinDL", [](const Accessible& each) { return each.Find("push button", "Licences...") != nullptr; });
    CheckTargets(about, {{"push button", "Licences..."}});
    REQUIRE(about.Find("push button", "Licences...")->Press());
    const Accessible licences = seen.Window("Licences of the Parts of Others", [](const Accessible& each) {
        return each.Find("push button", "Close") != nullptr;
    });
    CheckTargets(licences, {{"push button", "Close"}});
    REQUIRE(licences.Find("push button", "Close")->Press());
    REQUIRE(about.Find("push button", "Ok")->Press());

    choose("History...");
    const Accessible history = seen.Window("LASER - History", [](const Accessible& each) {
        return each.Find("table cell", "the port was lost") != nullptr;
    });
    CheckWindow(history, {{"combo box", "Machine"},
                          {"text", "Number"},
                          {"combo box", "Days"},
                          {"combo box", "Outcome"},
                          {"table cell", "4711"}});
    CheckTargets(history, {{"push button", "Refresh"}, {"push button", "Close"}, {"combo box", "Outcome"}});
    REQUIRE(history.Find("push button", "Close")->Press());

    seen.Disconnect();
    // Chance decides which step finds the outage first.
    std::optional<Accessible> box;
    REQUIRE(WaitUntil([&] {
        box = ReadWindow("tarvindl", "Comms Status Check");
        if (!box)
            box = ReadWindow("tarvindl", "Read Data");
        return box && box->Find("push button", "Ok") != nullptr;
    }));
    CheckWindow(*box, {{"label", "The connection to the serial port is lost."},
                       {"push button", "Copy"},
                       {"check box", "Don't Show This Message Again"}});
    CheckTargets(*box, {{"push button", "Ok"}});
}

}
