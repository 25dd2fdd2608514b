// The first start: the page that makes an installation, and the program that decides whether to show it.
#include "User.h"
#include "harness/ChildProcessPosix.h"
#include "harness/TemporaryInstallation.h"
#include "harness/WaitUntil.h"
#include "settings/SettingsStore.h"
#include "ui/StartDialog.h"

#include <csignal>
#include <cstdlib>

namespace tarvin::test {

namespace {

bool IsVisible(const std::string& title) {
    return std::system(("xdotool search --onlyvisible --name '^" + title + "' >/dev/null 2>&1").c_str()) == 0;
}

}

TEST_CASE("StartDialog: says what is wrong, and then makes the installation with the machine") {
    const TemporaryFolder folder;
    const auto home = folder / "home";
    StartDialog* const dialog = OnUi([&] {
        auto* made = new StartDialog(home, {u"English", u"German"});
        made->Show();
        return made;
    });
    const auto named = [&](const char* name) { return OnUi([&] { return wxWindow::FindWindowByName(name, dialog); }); };
    const auto enter = [&](const char* name, const std::string& text) {
        auto* const field = dynamic_cast<wxTextCtrl*>(named(name));
        REQUIRE(field != nullptr);
        OnUi([&] { field->SetValue(wxString::FromUTF8(text)); });
    };
    const auto press = [&](const char* button) {
        wxWindow* const found = ButtonIn(dialog, button);
        REQUIRE(found != nullptr);
        OnUi([&] {
            wxCommandEvent event(wxEVT_BUTTON, found->GetId());
            event.SetEventObject(found);
            found->HandleWindowEvent(event);
        });
    };
    enter("Name of the machine", " ");
    press("Create");
    CHECK(TextIn(dialog).find("A name is needed here.") != std::string::npos);
    CHECK_FALSE(std::filesystem::exists(home / "KEL.INI"));
    enter("Name of the machine", "LASER 2");
    enter("Files from the machine", "/dev/null/nc");
    press("Create");
    CHECK(OnUi([&] { return dialog->IsShown(); }));
    CHECK_FALSE(std::filesystem::exists(home / "LASER 2.INI"));
    enter("Files from the machine", (folder / "in").string());
    auto* const speed = dynamic_cast<wxChoice*>(named("Speed (baud)"));
    auto* const language = dynamic_cast<wxChoice*>(named("Language"));
    REQUIRE(speed != nullptr);
    REQUIRE(language != nullptr);
    OnUi([&] { speed->SetStringSelection("9600"); });
    OnUi([&] { language->SetStringSelection("English"); });
    press("Create");
    CHECK(Becomes([&] { return !dialog->IsShown(); }));
    CHECK(OnUi([&] { return dialog->GetReturnCode(); }) == wxID_OK);
    const auto settings = SettingsStore(home, u"LASER 2", u"").Load({}).settings;
    CHECK(settings.baudRate == u"9600");
    CHECK(settings.language == u"English");
    CHECK(ToPath(settings.uploadPath).parent_path() == folder / "in");
    CHECK(std::filesystem::is_directory(folder / "in"));
    CHECK(std::filesystem::exists(home / "KEL.INI"));
    OnUi([&] { dialog->Destroy(); });
}

TEST_CASE("tarvindl-start: shows the page without an installation, and the machine's window with one") {
    const TemporaryFolder folder;
    ChildProcess first("tarvindl-start", {{}, {{"TARVINDL_HOME", (folder / "none").string()}}});
    CHECK(WaitUntil([] { return IsVisible("Set Up TarvinDL"); }));
    const TemporaryInstallation installation;
    ChildProcess second("tarvindl-start", {{}, {{"TARVINDL_HOME", installation.Path().string()}}});
    CHECK(WaitUntil([] { return IsVisible("LASER"); }));
    second.Signal(SIGTERM);
    CHECK(second.WaitForExit() == 0);
}

}
