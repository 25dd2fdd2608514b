#include "DesktopFixture.h"

#include <wx/spinctrl.h>

namespace tarvin::test {

namespace {

constexpr char caption[] = "Download Settings";

template <typename Control>
Control* Named(wxWindow* dialog, const std::string& name) {
    return OnUi([&] { return dynamic_cast<Control*>(wxWindow::FindWindowByName(name, dialog)); });
}

// Selects the entry and sends the event of a choice by the user.
void Choose(wxWindow* dialog, const std::string& list, const std::string& entry) {
    auto* choice = Named<wxChoice>(dialog, list);
    REQUIRE(choice != nullptr);
    const bool isThere = OnUi([&] {
        const bool found = choice->SetStringSelection(entry);
        wxCommandEvent event(wxEVT_CHOICE, choice->GetId());
        event.SetEventObject(choice);
        choice->HandleWindowEvent(event);
        return found;
    });
    CHECK_MESSAGE(isThere, list, " has no ", entry);
}

wxTopLevelWindow* OpenSettings(DesktopFixture& desktop) {
    Click(desktop.Panel().changeSettings);
    wxTopLevelWindow* dialog = WindowTitled(caption);
    REQUIRE(dialog != nullptr);
    return dialog;
}

}

TEST_CASE("SettingsDialog: a transfer goes on while the dialog is open, and settings change while the line is in use") {
    DesktopFixture desktop;
    std::string program;
    for (int number = 0; number < 1000; ++number)
        program += "G01 X" + std::to_string(number) + "\r\n";
    desktop.folder.WriteFile("NC/200.nc", program);
    const std::string file = (desktop.folder / "NC/200.nc").string();
    std::vector<std::string> commands = {"--delay", "5", "check", "200", file};
    // More link tests than the test case takes.
    commands.insert(commands.end(), 10000, "test");
    auto& controller = desktop.RunController(commands);
    REQUIRE(Becomes([&] { return std::filesystem::exists(desktop.folder / "line"); }));
    desktop.Start();
    REQUIRE(Becomes([&] { return desktop.Panel().statusLine->Text().starts_with("Downloading"); }));

    wxTopLevelWindow* dialog = OpenSettings(desktop);
    const std::string status = desktop.Status();
    CHECK(Becomes([&] { return desktop.Panel().statusLine->Text().utf8_string() != status; }));
    CHECK(desktop.StatusBecomes("Loop Back Test"));
    Choose(dialog, "Baud Rate", "9600");
    Choose(dialog, "Flow Control", "Hardware");
    Click(ButtonIn(dialog, "OK"));
    CHECK(BecomesHidden(caption));
    CHECK(desktop.CaptionBecomes("LASER COM1:9600,N,8,1,Hardware"));
    for (int answered = 0; answered < 3; ++answered)
        CHECK(controller.WaitForOutput("ok"));
    CHECK(controller.Output().find("FAILED") == std::string::npos);
}

TEST_CASE("SettingsDialog: a cancelled dialog changes nothing but the folder that was browsed for") {
    DesktopFixture desktop;
    desktop.Connect();
    std::filesystem::create_directory(desktop.folder / "Arrivals");
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    Choose(dialog, "Baud Rate", "110");
    Click(Named<wxButton>(dialog, "Browse for the upload folder"));
    wxTopLevelWindow* browser = WindowTitled("Upload Path");
    REQUIRE(browser != nullptr);
    const std::string chosen = (desktop.folder / "Arrivals").string();
    OnUi([&] { dynamic_cast<wxDirDialog*>(browser)->SetPath(chosen); });
    REQUIRE(SystemDialogBecomesActive());
    PressUntilHidden(WXK_RETURN, "Upload Path");
    auto* field = Named<wxTextCtrl>(dialog, "Upload Path");
    CHECK(Becomes([&] { return field->GetValue().utf8_string() == chosen + "/"; }));
    REQUIRE(Becomes([&] { return dialog->IsActive(); }));
    PressKey(WXK_ESCAPE);
    REQUIRE(BecomesHidden(caption));
    CHECK(desktop.Caption() == "LASER COM1:2400,N,8,1,None");

    dialog = OpenSettings(desktop);
    CHECK(OnUi([&, list = Named<wxChoice>(dialog, "Baud Rate")] { return list->GetStringSelection().utf8_string(); }) ==
          "2400");
    CHECK(OnUi([&, edit = Named<wxTextCtrl>(dialog, "Upload Path")] { return edit->GetValue().utf8_string(); }) ==
          chosen + "/");
}

TEST_CASE("SettingsDialog: a wrong field says so and keeps the dialog open, and fields follow their switches") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    auto* folder = Named<wxTextCtrl>(dialog, "Download Path");
    auto* logFile = Named<wxTextCtrl>(dialog, "Log File");
    auto* starts = Named<wxChoice>(dialog, "Character sent at the start of a transmission");
    REQUIRE((folder != nullptr && logFile != nullptr && starts != nullptr));
    CHECK_FALSE(OnUi([&] { return logFile->IsEnabled() || starts->IsEnabled(); }));
    Click(Named<wxCheckBox>(dialog, "Send Code to Start Transmission"));
    CHECK(Becomes([&] { return starts->IsEnabled(); }));

    const std::string before = TextIn(dialog);
    OnUi([&] { folder->SetValue((desktop.folder / "nowhere").string()); });
    Click(ButtonIn(dialog, "OK"));
    CHECK(Becomes([&] { return wxWindow::FindFocus() == folder; }));
    CHECK(TextIn(dialog) != before);
    CHECK(OnUi([&] { return dialog->IsShown(); }));
    OnUi([&] { folder->SetValue(desktop.folder.Path().string()); });
    Click(ButtonIn(dialog, "OK"));
    CHECK_MESSAGE(BecomesHidden(caption), TextIn(dialog));
    REQUIRE(desktop.Close());
    CHECK(desktop.folder.ReadFile("LASER.INI").find(std::string("n\0o\0w\0h", 7)) == std::string::npos);
}

TEST_CASE("MainWindow: a handshake switch sets up the port at once") {
    DesktopFixture desktop("[Port Settings]\nflow control=Combined\ntransmit delay=0\n");
    desktop.Connect();
    desktop.Start();
    Click(desktop.Panel().ctsSwitch);
    CHECK(Becomes([&] { return !desktop.Panel().ctsSwitch->IsChecked(); }));
    PressKey('D', wxMOD_ALT);
    CHECK(Becomes([&] { return !desktop.Panel().dsrSwitch->IsChecked(); }));
    REQUIRE(desktop.Close());
    desktop.Start();
    CHECK(Becomes([&] { return !desktop.Panel().ctsSwitch->IsChecked() && !desktop.Panel().dsrSwitch->IsChecked(); }));
}

}
