#include "User.h"

#include <algorithm>
#include <thread>

#include <wx/uiaction.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

constexpr auto pollPeriod = 5ms;

wxTopLevelWindow* FindShown(const std::string& title) {
    for (wxWindow* window : wxTopLevelWindows) {
        auto* top = dynamic_cast<wxTopLevelWindow*>(window);
        if (top != nullptr && top->IsShown() && !top->IsBeingDeleted() && top->GetTitle().utf8_string() == title)
            return top;
    }
    return nullptr;
}

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
    REQUIRE(Becomes([window] { return window->IsShownOnScreen() && window->IsEnabled(); }));
    // The pointer first: a press without its arrival may go to what was there before.
    wxPoint target;
    REQUIRE(Becomes([window, &target] {
        // By the parent's reckoning: a control that reads from right to left counts from its right edge.
        wxWindow* parent = window->GetParent();
        const wxPoint corner = window->IsTopLevel() ? window->GetPosition() : parent->ClientToScreen(window->GetPosition());
        target = corner + window->GetSize() / 2;
        wxUIActionSimulator().MouseMove(target.x, target.y);
        return wxGetMousePosition() == target;
    }));
    OnUi([] { wxUIActionSimulator().MouseClick(); });
}

void PressKey(int key, int modifiers) {
    OnUi([key, modifiers] { wxUIActionSimulator().Char(key, modifiers); });
}

void Type(const std::string& text) {
    for (const char character : text)
        OnUi([character] { wxUIActionSimulator().Text(std::string(1, character).c_str()); });
}

wxTopLevelWindow* WindowTitled(const std::string& title) {
    wxTopLevelWindow* found = nullptr;
    Becomes([&] { return (found = FindShown(title)) != nullptr; });
    return found;
}

bool BecomesHidden(const std::string& title) {
    return Becomes([&] { return FindShown(title) == nullptr; });
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
