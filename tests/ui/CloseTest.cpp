#include "DesktopFixture.h"

#include <csignal>

#include <wx/bookctrl.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

// The limit for a slow test machine. A user waits for a fraction of it.
constexpr auto closeLimit = 5s;

}

TEST_CASE("MainWindow: it closes in each state, with its log and its settings in order") {
    struct Case {
        std::string name;
        std::function<void(DesktopFixture&)> bring;
    };
    const auto click = [](wxButton* button, const char* title) {
        Click(button);
        REQUIRE(WindowTitled(title) != nullptr);
    };
    const Case cases[] = {
        {"idle", [](DesktopFixture&) {}},
        {"during an upload",
         [](DesktopFixture& desktop) {
             // The checksums are wrong: the program looks at the codes alone.
             desktop.terminal->Write("ABST0100 \rABADG01 X1 \r");
             REQUIRE(Becomes([&] { return desktop.Panel().statusLine->Text().starts_with("Uploading"); }));
         }},
        {"with an outage told",
         [](DesktopFixture& desktop) {
             desktop.Disconnect();
             REQUIRE(desktop.OutageBox() != nullptr);
         }},
        {"with the settings open, and a folder looked for",
         [&](DesktopFixture& desktop) {
             click(desktop.Panel().changeSettings, "Download Settings");
             // On the page of the folders.
             Click(OnUi([] {
                 wxWindow* const browse = wxWindow::FindWindowByName("Browse for the upload folder");
                 auto& pages = dynamic_cast<wxBookCtrlBase&>(*browse->GetGrandParent()->GetParent());
                 pages.SetSelection(1);
                 return browse;
             }));
             REQUIRE(WindowTitled("Upload Path") != nullptr);
         }},
        {"with a file asked for",
         [&](DesktopFixture& desktop) {
             desktop.Engine().ResetLink();
             click(desktop.Panel().sendFile, "Open NC file");
         }},
        {"with an outage told over the settings, and the help open",
         [&](DesktopFixture& desktop) {
             click(desktop.Panel().help, "Welcome to TarvinDL");
             click(desktop.Panel().changeSettings, "Download Settings");
             desktop.Disconnect();
             REQUIRE(desktop.OutageBox() != nullptr);
         }},
        {"with a dialog of the help window open",
         [&](DesktopFixture& desktop) {
             click(desktop.Panel().help, "Welcome to TarvinDL");
             OnUi([] {
                 wxTheApp->CallAfter([] {
                     wxDialog own(nullptr, wxID_ANY, "Options");
                     own.ShowModal();
                 });
             });
             REQUIRE(WindowTitled("Options") != nullptr);
         }},
        {"held by an XOFF",
         [](DesktopFixture& desktop) {
             desktop.terminal->Write("\x13"
                                     "ABTS \r");
             REQUIRE(Becomes([&] { return desktop.Panel().xoffHold->IsLit(); }));
         }},
    };
    for (const Case& entry : cases) {
        CAPTURE(entry.name);
        DesktopFixture desktop;
        desktop.Connect();
        desktop.Start();
        desktop.Engine().StartCommsLog(desktop.folder / "line.log");
        REQUIRE(Becomes([&] { return desktop.Panel().logSwitch->IsChecked(); }));
        entry.bring(desktop);
        CHECK(desktop.Close(closeLimit));
        CHECK(desktop.folder.ReadFile("line.log").find("Application Terminated\r\n") != std::string::npos);
        CHECK(desktop.folder.ReadFile("LASER.INI").starts_with("\x41\x45\xF7\x05"));
    }
}

TEST_CASE("tarvindl: it ends with 0 without an installation, and in order when it is told to end") {
    TemporaryFolder folder;
    const std::map<std::string, std::string> environment = {{"TARVINDL_HOME", folder.Path().string()}};
    {
        ChildProcess program("tarvindl", {{"LASER"}, environment});
        CHECK(program.WaitForExit() == 0);
        CHECK(program.Output().find("KEL.INI") != std::string::npos);
    }
    {
        auto noDisplay = environment;
        noDisplay["DISPLAY"] = "";
        ChildProcess program("tarvindl", {{"LASER"}, noDisplay});
        CHECK(program.WaitForExit() == 0);
    }
    std::filesystem::create_directory(folder / "NC");
    folder.WriteFile("KEL.INI", "[PROGRAM PATHS]\nNC Files=NC\n");
    ChildProcess program("tarvindl", {{"LASER", "2"}, environment});
    // The program prints nothing, but its window can be found.
    const std::string search = "xdotool search --name '^LASER 2 - No Link$' >/dev/null 2>&1";
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::system(search.c_str()) != 0)
        REQUIRE(std::chrono::steady_clock::now() < end);
    program.Signal(SIGTERM);
    CHECK(program.WaitForExit(closeLimit) == 0);
    CHECK(std::filesystem::exists(folder / "LASER 2.INI"));
}

TEST_CASE("tarvindl: it shows a box for a corrupt installation, and ends with 1") {
    TemporaryFolder folder;
    folder.WriteFile("KEL.INI", "[PORTS]\n");
    const std::map<std::string, std::string> environment = {{"TARVINDL_HOME", folder.Path().string()}};
    ChildProcess program("tarvindl", {{"LASER"}, environment});
    const std::string box = "xdotool search --onlyvisible --name '^Corrupt Installation$'";
    const auto end = std::chrono::steady_clock::now() + patience;
    while (std::system((box + " >/dev/null 2>&1").c_str()) != 0)
        REQUIRE(std::chrono::steady_clock::now() < end);
    CHECK(std::system((box + " windowfocus --sync key Return >/dev/null 2>&1").c_str()) == 0);
    CHECK(program.WaitForExit(closeLimit) == 1);
    CHECK(program.Output().find("has no section PROGRAM PATHS") != std::string::npos);
    auto noDisplay = environment;
    noDisplay["DISPLAY"] = "";
    ChildProcess unseen("tarvindl", {{"LASER"}, noDisplay});
    CHECK(unseen.WaitForExit() == 1);
}

}
