#include "User.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <thread>
#include <utility>

#include <wx/filedlg.h>
#include <wx/uiaction.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

constexpr auto pollPeriod = 5ms;

std::function<wxWindow*()> systemDialog;

// Notices that a mouse button was let go. Installed while it lives, which is within the user interface's thread.
class ReleaseWatch final : public wxEventFilter {
public:
    ReleaseWatch() { wxEvtHandler::AddFilter(this); }
    ~ReleaseWatch() override { wxEvtHandler::RemoveFilter(this); }
    ReleaseWatch(const ReleaseWatch&) = delete;
    ReleaseWatch& operator=(const ReleaseWatch&) = delete;

    int FilterEvent(wxEvent& event) override {
        isReleased = isReleased || event.GetEventType() == wxEVT_LEFT_UP;
        return Event_Skip;
    }
    bool isReleased = false;
};

// Dialogs of the system keep their title in a field of their own.
std::string TitleOf(const wxTopLevelWindow& window) {
    if (const auto* file = dynamic_cast<const wxFileDialog*>(&window))
        return file->GetMessage().utf8_string();
    if (const auto* folder = dynamic_cast<const wxDirDialog*>(&window))
        return folder->GetMessage().utf8_string();
    return window.GetTitle().utf8_string();
}

// For the log of a failed test: why the window cannot be clicked.
std::string StateOf(wxWindow& window, wxTopLevelWindow& top) {
    std::string text = "'" + window.GetLabel().utf8_string() + "' is " +
                       (window.IsShownOnScreen() ? "shown" : "hidden") +
                       (window.IsEnabled() ? ", enabled" : ", disabled") + ", its window '" + TitleOf(top) + "' is " +
                       (top.IsActive() ? "active" : "inactive") + ". Shown:";
    for (const wxWindow* other : wxTopLevelWindows) {
        if (other->IsShown())
            text += " '" + TitleOf(dynamic_cast<const wxTopLevelWindow&>(*other)) + "'";
    }
    return text;
}

wxTopLevelWindow* FindShown(const std::string& title) {
    std::vector<wxWindow*> windows(wxTopLevelWindows.begin(), wxTopLevelWindows.end());
    // The toolkit's list of windows leaves out dialogs of the system.
    if (wxWindow* dialog = systemDialog ? systemDialog() : nullptr)
        windows.push_back(dialog);
    for (wxWindow* window : windows) {
        auto* top = dynamic_cast<wxTopLevelWindow*>(window);
        if (top != nullptr && top->IsShown() && !top->IsBeingDeleted() && TitleOf(*top) == title)
            return top;
    }
    return nullptr;
}

}

void FindSystemDialogBy(std::function<wxWindow*()> find) {
    systemDialog = std::move(find);
}

bool SystemDialogBecomesActive() {
    return Becomes([] {
        return systemDialog && systemDialog() != nullptr &&
               std::none_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                            [](wxWindow* window) { return dynamic_cast<wxTopLevelWindow&>(*window).IsActive(); });
    });
}

void PickFile(const std::string& title, const std::filesystem::path& path) {
    REQUIRE(WindowTitled(title) != nullptr);
    REQUIRE(SystemDialogBecomesActive());
    PressKey('A', wxMOD_CONTROL);
    Type(path.string());
    PressUntilHidden(WXK_RETURN, title);
}

bool Becomes(const std::function<bool()>& condition, std::chrono::milliseconds longest) {
    const auto end = std::chrono::steady_clock::now() + longest;
    while (!OnUi(condition)) {
        if (std::chrono::steady_clock::now() > end)
            return false;
        std::this_thread::sleep_for(pollPeriod);
    }
    return true;
}

std::vector<wxWindow*> WindowsIn(wxWindow* window) {
    std::vector<wxWindow*> windows = {window};
    for (std::size_t at = 0; at < windows.size(); ++at) {
        for (wxWindow* child : windows[at]->GetChildren()) {
            if (!child->IsTopLevel())
                windows.push_back(child);
        }
    }
    return windows;
}

void Click(wxWindow* window) {
    REQUIRE(window != nullptr);
    // The window manager has placed a window when it becomes active.
    auto* top = dynamic_cast<wxTopLevelWindow*>(OnUi([window] { return wxGetTopLevelParent(window); }));
    REQUIRE(top != nullptr);
    if (!Becomes([top] { return top->IsActive(); }, 1s))
        OnUi([top] { top->Raise(); });
    if (!Becomes([window, top] { return top->IsActive() && window->IsShownOnScreen() && window->IsEnabled(); }))
        FAIL(OnUi([window, top] { return StateOf(*window, *top); }));
    // Waits until the pointer has arrived, or the click may go to the window below. Waits until the target rests too: a
    // window that has just changed may still be moving to its new size.
    wxPoint target;
    REQUIRE(Becomes([window, &target] {
        // In coordinates of the parent: a control with a right-to-left layout counts from its right edge.
        const wxPoint corner = window->GetParent()->ClientToScreen(window->GetPosition());
        const wxPoint before = std::exchange(target, corner + window->GetSize() / 2);
        wxUIActionSimulator().MouseMove(target.x, target.y);
        return target == before && wxGetMousePosition() == target;
    }));
    // What the click does is done when the toolkit has handled its release. A caller that types before then would see
    // its text selected by the click's own handler. Some controls keep the release to themselves: a while is enough.
    std::optional<ReleaseWatch> watch;
    OnUi([&watch] {
        watch.emplace();
        wxUIActionSimulator().MouseClick();
    });
    Becomes([&watch] { return watch->isReleased; }, 1s);
    OnUi([&watch] { watch.reset(); });
}

void PressKey(int key, int modifiers) {
    OnUi([key, modifiers] { wxUIActionSimulator().Char(key, modifiers); });
}

void Type(const std::string& text) {
    // The simulator of the toolkit can type few characters only.
    REQUIRE(std::system(("xdotool type --delay 1 '" + text + "'").c_str()) == 0);
}

wxTopLevelWindow* WindowTitled(const std::string& title) {
    return WindowTitledOneOf({title});
}

wxTopLevelWindow* WindowTitledOneOf(const std::vector<std::string>& titles) {
    wxTopLevelWindow* found = nullptr;
    Becomes([&] {
        return std::any_of(titles.begin(), titles.end(),
                           [&found](const std::string& title) { return (found = FindShown(title)) != nullptr; });
    });
    return found;
}

bool BecomesHidden(const std::string& title, std::chrono::milliseconds longest) {
    return Becomes([&] { return FindShown(title) == nullptr; }, longest);
}

void PressUntilHidden(int key, const std::string& title) {
    bool isGone = false;
    for (int presses = 0; presses < 10 && !isGone; ++presses) {
        PressKey(key);
        isGone = BecomesHidden(title, 2s);
    }
    REQUIRE(isGone);
}

wxWindow* ButtonIn(wxWindow* window, const std::string& caption) {
    return OnUi([&]() -> wxWindow* {
        for (wxWindow* child : WindowsIn(window)) {
            if (dynamic_cast<wxButton*>(child) != nullptr && child->IsShown() &&
                wxControl::RemoveMnemonics(child->GetLabel()).utf8_string() == caption)
                return child;
        }
        return nullptr;
    });
}

std::string TextIn(wxWindow* window) {
    return OnUi([&] {
        std::string text;
        for (wxWindow* child : WindowsIn(window))
            text += wxControl::RemoveMnemonics(child->GetLabel()).utf8_string() + "\n";
        return text;
    });
}

}
