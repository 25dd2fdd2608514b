#include "DesktopFixture.h"
#include "harness/WaitUntil.h"

#include <algorithm>
#include <cstdlib>

#include <wx/bookctrl.h>
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

void ShowPage(wxWindow* dialog, const std::string& pageCaption) {
    REQUIRE(OnUi([&] {
        for (wxWindow* window : WindowsIn(dialog)) {
            auto* pages = dynamic_cast<wxBookCtrlBase*>(window);
            for (std::size_t page = 0; pages != nullptr && page < pages->GetPageCount(); ++page) {
                if (pages->GetPageText(page) == pageCaption) {
                    pages->SetSelection(page);
                    return true;
                }
            }
        }
        return false;
    }));
}

// The notes and problems that can be seen.
std::string MessagesIn(wxWindow* dialog) {
    return OnUi([&] {
        std::string messages;
        for (wxWindow* window : WindowsIn(dialog)) {
            if (window->GetName() == "message" && window->IsShownOnScreen())
                messages += window->GetLabel().utf8_string() + "\n";
        }
        return messages;
    });
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
    ShowPage(dialog, "Files and Log");
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
    // The problem is on another page, which appears.
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

TEST_CASE("SettingsDialog: a number out of range is said and not changed, and nothing moves when a field says so") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    DownloadSettings stored;
    stored.port = u"COM1";
    stored.baudRate = u"2400";
    stored.uploadPath = stored.downloadPath = FromPath(desktop.folder / "NC/");
    stored.controllerKind = controllerByHand;
    stored.characterDelayMilliseconds = 7000;
    desktop.Engine().ApplySettings(stored);
    REQUIRE(Becomes([&] { return !desktop.Engine().Snapshot().isConversation; }));
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    auto* delay = Named<wxSpinCtrl>(dialog, "Line Delay (milliseconds)");
    const auto delayTyped = [&](const char* digits) {
        OnUi([&] { delay->SetFocus(); });
        REQUIRE(Becomes([&] { return dialog->IsActive() && delay->HasFocus(); }));
        PressKey('A', wxMOD_CONTROL);
        Type(digits);
    };
    const auto places = [&] {
        return OnUi([&] {
            std::vector<wxPoint> points;
            for (wxWindow* window : WindowsIn(dialog)) {
                if (dynamic_cast<wxStaticText*>(window) == nullptr && dynamic_cast<wxStaticBitmap*>(window) == nullptr)
                    points.push_back(window->GetScreenPosition() - dialog->GetScreenPosition());
            }
            return points;
        });
    };
    // The size of the frame is known by then, and places are counted from its edge.
    REQUIRE(Becomes([&] { return dialog->IsActive(); }));
    const auto before = places();
    delayTyped("5000");
    CHECK(Becomes([&] { return delay->GetTextValue() == "5000"; }));
    CHECK(MessagesIn(dialog).find("0 to 999 only.") != std::string::npos);
    // A value that was stored so is told and may stay; a new one may not.
    Click(ButtonIn(dialog, "OK"));
    CHECK(Becomes([&] {
        const auto windows = WindowsIn(dialog);
        return std::any_of(windows.begin(), windows.end(), [](wxWindow* window) {
            return window->GetLabel() == "0 to 999 only. Press OK once more to keep it.";
        });
    }));
    CHECK(OnUi([&] { return delay->GetValue(); }) == 5000);
    CHECK(WaitUntil([&] { return places() == before; }));
    Click(ButtonIn(dialog, "OK"));
    CHECK(OnUi([&] { return dialog->IsShown(); }));
    delayTyped("50");
    CHECK(Becomes([&] { return delay->GetTextValue() == "50"; }));
    PressUntilHidden(WXK_RETURN, caption);
    dialog = OpenSettings(desktop);
    delay = Named<wxSpinCtrl>(dialog, "Line Delay (milliseconds)");
    auto* character = Named<wxSpinCtrl>(dialog, "Character Delay (milliseconds)");
    CHECK(OnUi([&] { return delay->GetValue() == 50 && character->GetValue() == 7000; }));
}

TEST_CASE("SettingsDialog: the mouse wheel changes nothing, and Enter confirms wherever it is pressed") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    auto* speeds = Named<wxChoice>(dialog, "Baud Rate");
    auto* delay = Named<wxSpinCtrl>(dialog, "Transmit Delay (Seconds)");
    OnUi([&] { delay->SetValue(15); });
    for (wxWindow* control : {static_cast<wxWindow*>(speeds), static_cast<wxWindow*>(delay)}) {
        const wxPoint middle =
            OnUi([&] { return control->GetScreenPosition() + wxSize(10, control->GetSize().GetHeight() / 2); });
        const std::string move = "xdotool mousemove " + std::to_string(middle.x) + " " + std::to_string(middle.y);
        REQUIRE(std::system((move + " click --repeat 3 4 click --repeat 5 5").c_str()) == 0);
    }
    // The keys go the same way as the wheel, and arrive after it.
    Choose(dialog, "Baud Rate", "2400");
    OnUi([&] { delay->SetFocus(); });
    PressKey(WXK_UP);
    CHECK(Becomes([&] { return delay->GetValue() == 16; }));
    CHECK(OnUi([&] { return speeds->GetStringSelection() == "2400"; }));
    for (const char* list : {"Baud Rate", "Flow Control", "Controller"}) {
        CAPTURE(list);
        auto* choice = Named<wxChoice>(dialog, list);
        OnUi([&] { choice->SetFocus(); });
        REQUIRE(Becomes([&] { return choice->HasFocus(); }));
        PressKey(WXK_RETURN);
        CHECK(BecomesHidden(caption));
        dialog = OpenSettings(desktop);
    }
}

TEST_CASE("SettingsDialog: fields without an effect say so, and the dialog fits small screens") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    const auto noteCount = [&] {
        const std::string messages = MessagesIn(dialog);
        std::size_t count = 0;
        for (std::size_t at = 0; (at = messages.find("Has no effect", at)) != std::string::npos; ++at)
            ++count;
        return count;
    };
    // Character delay, line delay and end code; then the transmit delay.
    CHECK(noteCount() == 3);
    Choose(dialog, "Controller", "Any (files sent and received by hand)");
    CHECK(noteCount() == 1);
    ShowPage(dialog, "Uploads and Calls");
    CHECK(noteCount() == 1);
    Choose(dialog, "Controller", "Asks for files by number");
    CHECK(noteCount() == 1);
    const wxSize size = OnUi([&] { return dialog->GetSize(); });
    // A screen of 1600x1200 at 200 %, with room for a bar of the system.
    CHECK(size.GetWidth() <= 800);
    CHECK(size.GetHeight() <= 590);
}

TEST_CASE("SettingsDialog: all messages show again, at once and in the next run") {
    DesktopFixture desktop;
    desktop.Connect();
    const std::filesystem::path list = desktop.folder / "LASER/Suppressed.txt";
    std::filesystem::create_directory(list.parent_path());
    desktop.folder.WriteFile("LASER/Suppressed.txt", "7\r\n");
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    ShowPage(dialog, "Uploads and Calls");
    Click(ButtonIn(dialog, "Show All Messages Again"));
    CHECK(Becomes([&] {
        const auto windows = WindowsIn(dialog);
        return std::any_of(windows.begin(), windows.end(),
                           [](wxWindow* window) { return window->GetLabel() == "All messages show again."; });
    }));
    CHECK_FALSE(std::filesystem::exists(list));
}

TEST_CASE("MainWindow: any machine gets a file that is sent by hand, and its file is received") {
    DesktopFixture desktop("[Port Settings]\nflow control=None\n");
    desktop.Connect();
    desktop.folder.WriteFile("NC/part.nc", "N1\r\nN2\r\n");
    desktop.Start();
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    Choose(dialog, "Controller", "Any (files sent and received by hand)");
    Click(Named<wxCheckBox>(dialog, "Send Code to Start Transmission"));
    Click(Named<wxCheckBox>(dialog, "Send Code to End Transmission"));
    Click(ButtonIn(dialog, "OK"));
    REQUIRE(BecomesHidden(caption));
    REQUIRE(Becomes([&] { return !desktop.Engine().Snapshot().isConversation; }));
    const std::string sent = (desktop.folder / "NC/part.nc").string();
    Click(desktop.Panel().sendFile);
    PickFile("Open NC file", sent);
    CHECK(desktop.StatusBecomes("Download Completed " + sent + " - 8 bytes"));
    CHECK(desktop.terminal->Read(10) == "\x12N1\r\nN2\r\n\x04");

    const std::string received = (desktop.folder / "NC/new.nc").string();
    Click(desktop.Panel().receiveFile);
    PickFile("Save NC file as", received);
    CHECK(desktop.StatusBecomes("Uploading " + received + " - 0 bytes received."));
    desktop.terminal->Write("leader\x12N3\r\nN4\x04trailer");
    CHECK(desktop.StatusBecomes("Upload Completed " + received + " - 6 bytes in file."));
    CHECK(BecomesHidden("Receiving NC File"));
    CHECK(desktop.folder.ReadFile("NC/new.nc") == "N3\r\nN4");
}

TEST_CASE("MainWindow: a handshake switch that has no effect shows no tick, and keeps its setting") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    for (wxCheckBox* handshake : {desktop.Panel().ctsSwitch, desktop.Panel().dsrSwitch})
        CHECK(Becomes([&] { return !handshake->IsEnabled() && !handshake->IsChecked(); }));
    wxTopLevelWindow* dialog = OpenSettings(desktop);
    Choose(dialog, "Flow Control", "Combined");
    Click(ButtonIn(dialog, "OK"));
    for (wxCheckBox* handshake : {desktop.Panel().ctsSwitch, desktop.Panel().dsrSwitch})
        CHECK(Becomes([&] { return handshake->IsEnabled() && handshake->IsChecked(); }));
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
