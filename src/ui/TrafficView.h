#pragma once
// The traffic with all that belongs to it: the find bar above it, the mark below it that says that following is off,
// and its part of the menu. User-interface thread.

#include "messages/MessageReport.h"
#include "ui/FindBar.h"
#include "ui/ModalLoop.h"
#include "ui/TextPane.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class TrafficView : public wxPanel {
public:
    explicit TrafficView(wxWindow* parent);

    // Runs the dialog for a file, and tells a failure. Both are needed before the menu is used, and outlive the view.
    struct Owner {
        ModalLoop* loop = nullptr;
        std::function<void(const MessageBoxText& box)> tell;
    };
    void SetOwner(Owner newOwner) { owner = std::move(newOwner); }

    TextPane& Pane() { return *pane; }

    // Adds the view's items to a menu that is about to be shown.
    void AppendTo(wxMenu& menu);
    // Does what the key asks for: Ctrl+F and F3. False if the view does not know it.
    bool HandleKey(const wxKeyEvent& event);

    void OpenFind();
    void CloseFind();
    bool IsFindOpen() const { return findBar != nullptr && findBar->IsShown(); }
    // Null before the bar was opened for the first time.
    const FindBar* Bar() const { return findBar; }

private:
    void Search(bool isForward, bool isTyping);
    void FindNext(bool isForward);
    void ChooseGutter(Gutter gutter);
    void AppendGutters(wxMenu& menu);
    void Save();
    void ShowFollowMark();
    wxWindow* MakeFollowMark();

    Owner owner;
    TextPane* pane;
    // Made when they are needed: hidden controls would lie in the way of the Tab key.
    FindBar* findBar = nullptr;
    wxWindow* followMark = nullptr;
};

}
