// Places of windows on the screen, compared to the pixel.
#include "DesktopFixture.h"
#include "ui/TransferEndDialog.h"
#include "ui/WindowPlacement.h"

#include <wx/display.h>

namespace tarvin::test {

namespace {

std::string Text(const wxRect& rect) {
    return std::to_string(rect.x) + "," + std::to_string(rect.y) + " " + std::to_string(rect.width) + "x" +
           std::to_string(rect.height);
}

struct OwnedDialog {
    explicit OwnedDialog(const wxRect& place) {
        OnUi([&] {
            frame = new wxFrame(nullptr, wxID_ANY, "LASER");
            frame->Show();
            dialog = MakeDownloadEndDialog(
                frame, [] {}, [] {});
        });
        // The size of the frame around a window is known once it is on the screen.
        REQUIRE(Becomes([&] { return frame->IsActive(); }));
        OnUi([&] { frame->SetSize(place); });
        REQUIRE(Becomes([&] { return frame->GetRect() == place; }));
    }
    ~OwnedDialog() {
        OnUi([this] { frame->Destroy(); });
    }

    bool IsWhole() const {
        const wxRect screen = wxDisplay(frame).GetClientArea();
        const wxSize least = dialog->GetSizer()->GetMinSize();
        const wxSize client = dialog->GetClientSize();
        return dialog->IsShownOnScreen() && screen.Contains(dialog->GetScreenRect()) &&
               client.GetWidth() >= least.GetWidth() && client.GetHeight() >= least.GetHeight();
    }

    wxFrame* frame = nullptr;
    TransferEndDialog* dialog = nullptr;
};

}

TEST_CASE("TransferEndDialog: it appears beside its owner, whole, and each time at the same place in the same size") {
    const struct {
        wxRect owner;
        bool isBeside;
    } cases[] = {{{100, 150, 800, 600}, true},
                 {{780, 150, 800, 600}, true},
                 {{100, 1150, 800, 600}, true},
                 {{0, 0, 1590, 1190}, false}};
    for (const auto& [place, isBeside] : cases) {
        CAPTURE(Text(place));
        OwnedDialog owned(place);
        std::string first;
        for (int round = 0; round < 4; ++round) {
            OnUi([&] { owned.dialog->Appear(true); });
            CHECK(Becomes([&] { return owned.IsWhole() && owned.dialog->IsActive(); }));
            CHECK(Becomes([&] {
                return owned.dialog->GetScreenRect().Intersects(owned.frame->GetScreenRect()) != isBeside;
            }));
            const std::string now = OnUi([&] { return Text(owned.dialog->GetScreenRect()); });
            if (first.empty())
                first = now;
            CHECK(now == first);
            OnUi([&] { owned.dialog->Appear(false); });
            CHECK(Becomes([&] { return !owned.dialog->IsShown() && owned.frame->IsActive(); }));
        }
    }
}

TEST_CASE("WindowPlacement: a window comes back exactly where it was, each time") {
    TemporaryFolder folder;
    ::setenv("XDG_CONFIG_HOME", folder.Path().c_str(), 1);
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const wxRect place(120, 90, 900, 700);
    OnUi([&] { desktop.window->SetSize(place); });
    REQUIRE(Becomes([&] { return desktop.window->GetRect() == place; }));
    for (int round = 0; round < 3; ++round) {
        REQUIRE(desktop.Close());
        desktop.Start();
        CHECK(OnUi([&] { return Text(desktop.window->GetScreenRect()); }) == Text(place));
    }
}

}
