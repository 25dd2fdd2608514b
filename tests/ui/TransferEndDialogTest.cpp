#include "ui/TransferEndDialog.h"

#include "User.h"

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
        // The window manager may still give it a place of its own choice.
        bool isInPlace = false;
        for (int attempt = 0; attempt < 10 && !isInPlace; ++attempt) {
            OnUi([&] { frame->SetSize(place); });
            isInPlace = Becomes([&] { return frame->GetRect() == place; }, std::chrono::seconds(1));
        }
        REQUIRE(isInPlace);
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
    struct Case {
        wxRect owner;
        bool isBeside;
    };
    const Case cases[] = {{{100, 150, 800, 600}, true},
                          {{780, 150, 800, 600}, true},
                          {{100, 1150, 800, 600}, true},
                          {{0, 0, 1590, 1190}, false}};
    for (const Case& each : cases) {
        CAPTURE(Text(each.owner));
        OwnedDialog owned(each.owner);
        std::string first;
        for (int round = 0; round < 4; ++round) {
            OnUi([&] { owned.dialog->Appear(true); });
            CHECK(Becomes([&] { return owned.IsWhole() && owned.dialog->IsActive(); }));
            CHECK(Becomes([&] {
                return owned.dialog->GetScreenRect().Intersects(owned.frame->GetScreenRect()) != each.isBeside;
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

}
