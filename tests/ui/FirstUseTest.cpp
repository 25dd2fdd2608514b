#include "DesktopFixture.h"
#include "settings/DownloadSettings.h"
#include "ui/FirstUsePage.h"

#include <algorithm>
#include <filesystem>

namespace tarvin::test {

namespace {

template <typename Control>
Control* Named(DesktopFixture& desktop, const std::string& name) {
    FirstUsePage& page = desktop.Panel().monitor->FirstUse();
    return OnUi([&] { return dynamic_cast<Control*>(wxWindow::FindWindowByName(name, &page)); });
}

// All texts that can be seen on the page.
std::string ShownText(DesktopFixture& desktop) {
    std::string text;
    for (wxWindow* window : WindowsIn(&desktop.Panel().monitor->FirstUse()))
        text += window->IsShown() ? window->GetLabel().utf8_string() + "\n" : std::string();
    // Long lines are wrapped.
    std::replace(text.begin(), text.end(), '\n', ' ');
    return text;
}

bool Shows(DesktopFixture& desktop, const std::string& words) {
    return Becomes([&] { return ShownText(desktop).find(words) != std::string::npos; });
}

}

TEST_CASE("FirstUsePage: leads from a port that is not there to a working line") {
    DesktopFixture desktop;
    // COM1, the port of the settings, has no device.
    PseudoTerminal other;
    desktop.folder.WriteFile("KEL.INI", desktop.folder.ReadFile("KEL.INI") + "COM3=" + other.Device().string() + "\n");
    desktop.Start();
    FirstUsePage& page = desktop.Panel().monitor->FirstUse();
    REQUIRE(Becomes([&] { return page.IsShownOnScreen(); }));
    // The box about the port that does not open must not keep the user from the page.
    if (wxTopLevelWindow* box = WindowTitledOneOf({"Open Comm"})) {
        const std::string title = OnUi([&] { return box->GetTitle().utf8_string(); });
        PressUntilHidden(WXK_ESCAPE, title);
    }
    auto* ports = Named<wxListBox>(desktop, "Ports");
    REQUIRE(Becomes([&] { return ports->GetCount() > 1; }));
    CHECK(OnUi([&] { return ports->GetString(0).utf8_string(); }).find("COM1") == 0);
    CHECK(OnUi([&] { return ports->GetString(0).utf8_string(); }).find("not plugged in") != std::string::npos);
    // A port that is free is proposed in place of one that is not there.
    CHECK(OnUi([&] { return ports->GetStringSelection().utf8_string(); }).find("COM3") == 0);

    auto* folder = Named<wxTextCtrl>(desktop, "NC folder");
    auto* extension = Named<wxTextCtrl>(desktop, "Extension");
    const std::string nc = desktop.folder.NcFolder().string();
    OnUi([&] { extension->SetValue(".tap"); });
    OnUi([&] { folder->SetValue("/not/there"); });
    CHECK(OnUi([&] { return ShownText(desktop); }).find("asks for 4711: /not/there/4711.tap") != std::string::npos);
    wxWindow* use = ButtonIn(&page, "Use and Test");
    REQUIRE(use != nullptr);
    const auto press = [&] {
        OnUi([&] {
            wxCommandEvent event(wxEVT_BUTTON, use->GetId());
            event.SetEventObject(use);
            use->HandleWindowEvent(event);
        });
    };
    press();
    CHECK(OnUi([&] { return wxWindow::FindFocus(); }) == folder);
    CHECK_FALSE(OnUi([&] { return desktop.Engine().Snapshot().hasLink; }));
    OnUi([&] { folder->SetValue(nc); });
    press();
    CHECK(desktop.CaptionBecomes("LASER COM3:2400,N,8,1,None"));
    CHECK(Becomes([&] { return !page.IsShown() && desktop.Panel().monitor->PicturePane().IsShown(); }));
}

TEST_CASE("FirstUsePage: takes over what another dialog changes, and keeps what the user has entered") {
    DesktopFixture desktop;
    PseudoTerminal first;
    PseudoTerminal second;
    desktop.folder.WriteFile("KEL.INI", desktop.folder.ReadFile("KEL.INI") + "COM4=" + first.Device().string() +
                                            "\nCOM3=" + second.Device().string() + "\n");
    desktop.Start();
    FirstUsePage& page = desktop.Panel().monitor->FirstUse();
    REQUIRE(Becomes([&] { return page.IsShownOnScreen(); }));
    auto* ports = Named<wxListBox>(desktop, "Ports");
    REQUIRE(Becomes([&] { return ports->GetCount() > 2; }));
    DownloadSettings changed;
    changed.port = u"COM4";
    OnUi([&] { page.ShowSettings(changed); });
    auto* extension = Named<wxTextCtrl>(desktop, "Extension");
    OnUi([&] { extension->SetValue("tap"); });
    changed.port = u"COM3";
    changed.baudRate = u"9600";
    OnUi([&] { page.ShowSettings(changed); });
    auto* speed = Named<wxChoice>(desktop, "Speed (baud)");
    CHECK(OnUi([&] { return speed->GetStringSelection(); }) == "9600");
    CHECK(Becomes([&] { return ports->GetStringSelection().StartsWith("COM3"); }));
    CHECK(OnUi([&] { return extension->GetValue(); }) == "tap");
}

TEST_CASE("FirstUsePage: says why a port does not open, and stays away once a line works") {
    DesktopFixture desktop;
    desktop.Start();
    FirstUsePage& page = desktop.Panel().monitor->FirstUse();
    REQUIRE(Becomes([&] { return page.IsShownOnScreen(); }));
    CHECK(Shows(desktop, "The device of COM1 is not there."));
    desktop.Connect();
    CHECK(Becomes([&] { return !page.IsShown(); }));
    desktop.Disconnect();
    CHECK(desktop.CaptionBecomes("LASER - No Link"));
    CHECK(Becomes([&] { return desktop.Panel().monitor->TheBoard().IsShown(); }));
    CHECK_FALSE(OnUi([&] { return page.IsShown(); }));
}

}
