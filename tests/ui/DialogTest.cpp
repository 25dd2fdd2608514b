#include "DesktopFixture.h"
#include "harness/Transcript.h"
#include "harness/WaitUntil.h"
#include "ui/CustomMessage.h"
#include "ui/TransferEndDialog.h"
#include "ui/WindowPlacement.h"

#include <map>
#include <set>

namespace tarvin::test {

TEST_CASE("MainWindow: a file that is sent by hand is put where the machine asks for it") {
    DesktopFixture desktop;
    desktop.Connect();
    std::filesystem::create_directory(desktop.folder / "office");
    desktop.folder.WriteFile("office/0815-part.tap", "G01 X1\r\n");
    desktop.folder.WriteFile("NC/77.nc", "old\r\n");
    desktop.Start();
    const auto send = [&](const std::string& number) {
        Click(desktop.Panel().sendFile);
        PickFile("Open NC file", desktop.folder / "office/0815-part.tap");
        wxTopLevelWindow* asking = WindowTitled("Sending NC File");
        REQUIRE(asking != nullptr);
        PressKey('A', wxMOD_CONTROL);
        Type(number);
        Click(ButtonIn(asking, "OK"));
        return asking;
    };
    // A number that leads out of the folder keeps the dialog open.
    wxTopLevelWindow* asking = send("../x");
    CHECK(WaitUntil([&] { return TextIn(asking).find("No file can have this number.") != std::string::npos; }));
    Click(ButtonIn(asking, "Cancel"));
    CHECK(BecomesHidden("Sending NC File"));
    send("0078");
    CHECK(desktop.StatusBecomes("Waiting... - 0815-part.tap is ready: ask for 78 at the machine"));
    CHECK(desktop.folder.ReadFile("NC/78.nc") == "G01 X1\r\n");
    send("77");
    wxTopLevelWindow* question = WindowTitled("Replace File");
    REQUIRE(question != nullptr);
    Click(ButtonIn(question, "No"));
    CHECK(BecomesHidden("Replace File"));
    CHECK(desktop.folder.ReadFile("NC/77.nc") == "old\r\n");
    send("77");
    Click(ButtonIn(WindowTitled("Replace File"), "Yes"));
    CHECK(desktop.StatusBecomes("Waiting... - 0815-part.tap is ready: ask for 77 at the machine"));
    CHECK(desktop.folder.ReadFile("NC/77.nc") == "G01 X1\r\n");
    REQUIRE(desktop.Close());
    // What is picked by hand does not redirect the controller.
    const std::string saved = desktop.folder.ReadFile("LASER.INI");
    CHECK(saved.find(std::string("t\0a\0p", 5)) == std::string::npos);
    CHECK(saved.find(std::string("o\0f\0f\0i\0c\0e", 11)) == std::string::npos);
}

TEST_CASE("TransferEndDialog: the dialog of a file that is received by hand waits for the machine and ends with it") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const std::string target = (desktop.folder / "NC/arrived.tap").string();
    const auto receive = [&] {
        Click(desktop.Panel().receiveFile);
        PickFile("Save NC file as", target);
        wxTopLevelWindow* receiving = WindowTitled("Receiving NC File");
        REQUIRE(receiving != nullptr);
        return receiving;
    };
    wxTopLevelWindow* receiving = receive();
    CHECK_FALSE(OnUi([&] { return receiving->GetRect().Intersects(desktop.window->GetRect()); }));
    Click(ButtonIn(receiving, "Cancel"));
    CHECK(desktop.StatusBecomes("Upload Cancelled " + target));
    CHECK(BecomesHidden("Receiving NC File"));
    CHECK_FALSE(std::filesystem::exists(target));

    receive();
    desktop.terminal->Write(Message("ABST5"));
    CHECK(desktop.StatusBecomes("Uploading " + target + " - 0 bytes received."));
    CHECK(desktop.CaptionBecomes("LASER arrived.tap"));
    CHECK_FALSE(
        OnUi([&] { return desktop.Panel().sendFile->IsEnabled() || desktop.Panel().receiveFile->IsEnabled(); }));
    desktop.terminal->Write(Message("ABADN1"));
    CHECK(desktop.StatusBecomes("Uploading " + target + " - 4 bytes received."));
    desktop.terminal->Write(Message("ABEF"));
    CHECK(desktop.StatusBecomes("Upload Completed " + target + " - 4 bytes in file."));
    CHECK(BecomesHidden("Receiving NC File"));
    CHECK(desktop.folder.ReadFile("NC/arrived.tap") == "N1\r\n");
    CHECK(Becomes([&] { return desktop.Panel().sendFile->IsEnabled() && desktop.Panel().receiveFile->IsEnabled(); }));
}

TEST_CASE("MainWindow: the log switch asks for a file, and is off again without one") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    Click(desktop.Panel().logSwitch);
    REQUIRE(WindowTitled("Save Log File As") != nullptr);
    REQUIRE(SystemDialogBecomesActive());
    PressUntilHidden(WXK_ESCAPE, "Save Log File As");
    CHECK(Becomes([&] { return !desktop.Panel().logSwitch->IsChecked(); }));

    Click(desktop.Panel().logSwitch);
    PickFile("Save Log File As", desktop.folder / "line.log");
    CHECK(Becomes([&] { return desktop.Panel().logSwitch->IsChecked() && desktop.Engine().Snapshot().isCommsLogOn; }));
    Click(desktop.Panel().logSwitch);
    CHECK(Becomes([&] { return !desktop.Engine().Snapshot().isCommsLogOn; }));
    const std::string log = desktop.folder.ReadFile("line.log");
    CHECK(log.find("Start of logging") != std::string::npos);
    CHECK(log.find("End of Logging") != std::string::npos);
}

TEST_CASE("CustomMessage: a box has the buttons of its style and returns their answers") {
    struct Case {
        unsigned style;
        const char* buttons;
        const char* pressed;
        int answer;
    };
    const Case cases[] = {
        {okOnly, "Ok", "Ok", 1},
        {okCancel | iconInformation, "Ok Cancel", "Cancel", 2},
        {yesNo | iconExclamation, "Yes No", "No", 7},
        {yesNoCancel, "Yes No Cancel", "Yes", 6},
        {okCancel | defaultButton2, "Ok Cancel", "", 2},
        {yesNoCancel | defaultButton3, "Yes No Cancel", "", 2},
        {yesNo, "Yes No", "", 6},
    };
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    for (const Case& entry : cases) {
        CAPTURE(entry.style);
        auto answer = std::make_shared<std::promise<int>>();
        auto answered = answer->get_future();
        OnUi([&] {
            desktop.window->CallAfter([&window = *desktop.window, entry, answer] {
                answer->set_value(window.ShowBox({u"Text with & in it", u"Question", entry.style}));
            });
        });
        wxTopLevelWindow* box = WindowTitled("Question");
        REQUIRE(box != nullptr);
        std::string buttons;
        for (wxWindow* child : OnUi([&] { return WindowsIn(box); })) {
            if (dynamic_cast<wxButton*>(child) != nullptr && child != ButtonIn(box, "Copy"))
                buttons += (buttons.empty() ? "" : " ") + wxControl::RemoveMnemonics(child->GetLabel()).utf8_string();
        }
        CHECK(buttons == entry.buttons);
        CHECK(TextIn(box).find("Text with & in it") != std::string::npos);
        if (*entry.pressed == '\0') {
            REQUIRE(Becomes([&] { return box->IsActive(); }));
            PressKey(WXK_RETURN);
        } else {
            Click(ButtonIn(box, entry.pressed));
        }
        REQUIRE(answered.wait_for(patience) == std::future_status::ready);
        CHECK(answered.get() == entry.answer);
    }
}

TEST_CASE("MainPanel: no two controls share a key, and the keyboard reaches each control") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const auto sharedKeys = [](wxWindow* window) {
        std::map<char, int> uses;
        for (wxWindow* child : WindowsIn(window)) {
            const std::string label = child->GetLabel().utf8_string();
            const auto mark = label.find('&');
            if (mark != std::string::npos && mark + 1 < label.size() && label[mark + 1] != '&')
                ++uses[static_cast<char>(std::toupper(label[mark + 1]))];
        }
        std::string shared;
        for (const auto& [key, count] : uses)
            shared += count > 1 ? std::string(1, key) : std::string();
        return shared;
    };
    CHECK(OnUi([&] { return sharedKeys(desktop.window); }) == "");
    std::set<wxWindow*> reached;
    const std::size_t wanted = OnUi([&] {
        std::size_t count = 0;
        for (wxWindow* child : WindowsIn(desktop.window))
            // A page that is hidden hides its buttons with it.
            count += child->IsShownOnScreen() && child->IsEnabled() &&
                             (dynamic_cast<wxButton*>(child) || dynamic_cast<wxCheckBox*>(child))
                         ? 1
                         : 0;
        return count;
    });
    for (int presses = 0; presses < 40 && reached.size() < wanted; ++presses) {
        wxWindow* before = OnUi([] { return wxWindow::FindFocus(); });
        PressKey(WXK_TAB);
        Becomes([&] { return wxWindow::FindFocus() != before; }, std::chrono::milliseconds(500));
        wxWindow* focus = OnUi([] { return wxWindow::FindFocus(); });
        if (dynamic_cast<wxButton*>(focus) != nullptr || dynamic_cast<wxCheckBox*>(focus) != nullptr)
            reached.insert(focus);
    }
    CHECK(reached.size() == wanted);

    Click(desktop.Panel().changeSettings);
    wxTopLevelWindow* settings = WindowTitled("Download Settings");
    REQUIRE(settings != nullptr);
    CHECK(OnUi([&] { return sharedKeys(settings); }) == "");
}

TEST_CASE("HelpBook: F1 opens the page that fits the active window") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    Click(desktop.Panel().help);
    CHECK(WindowTitled("Welcome to TarvinDL") != nullptr);
    OnUi([&] { desktop.window->Raise(); });
    REQUIRE(Becomes([&] { return desktop.window->IsActive(); }));
    PressKey(WXK_F1);
    CHECK(WindowTitled("The main window") != nullptr);
    Click(desktop.Panel().changeSettings);
    wxTopLevelWindow* settings = WindowTitled("Download Settings");
    REQUIRE(settings != nullptr);
    REQUIRE(Becomes([&] { return settings->IsActive(); }));
    PressKey(WXK_F1);
    CHECK(WindowTitled("Settings") != nullptr);
}

TEST_CASE("WindowPlacement: a window comes back to its place, unless a user could not reach it there") {
    TemporaryFolder folder;
    ::setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const wxRect left(120, 90, 900, 700);
    OnUi([&] { desktop.window->SetSize(left); });
    REQUIRE(Becomes([&] { return desktop.window->GetRect() == left; }));
    const wxSize leftClient = OnUi([&] { return desktop.window->GetClientSize(); });
    REQUIRE(desktop.Close());
    desktop.Start();
    CHECK(Becomes([&] { return desktop.window->GetRect() == left; }));
    CHECK(OnUi([&] { return desktop.window->GetClientSize(); }) == leftClient);
    REQUIRE(desktop.Close());
    CHECK(folder.ReadFile("TarvinDL/LASER window.ini").starts_with("[Window]\r\nx="));
    folder.WriteFile("TarvinDL/LASER window.ini", "[Window]\nx=90000\ny=-5000\nwidth=-3\nheight=99999999\n");
    desktop.Start();
    CHECK(Becomes([&] {
        const wxRect place = desktop.window->GetRect();
        return place.GetX() >= 0 && place.GetX() < 1600 && place.GetY() >= 0 && place.GetHeight() < 1200;
    }));
}

}
