#pragma once
// A menu whose items bring their actions. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <utility>

namespace tarvin {

class ActionMenu : public wxMenu {
public:
    // The actions run as events of `owner`, after the menu has closed: a screen reader chooses an item by a call that
    // waits for its handler, which may show a dialog.
    explicit ActionMenu(wxEvtHandler& owner) : owner(owner) {}

    void Add(KelTextView label, bool isEnabled, std::function<void()> action) {
        wxMenuItem* item = Append(wxID_ANY, ToWx(label));
        item->Enable(isEnabled);
        Bind(
            wxEVT_MENU, [this, kept = std::move(action)](wxCommandEvent&) { owner.CallAfter(kept); }, item->GetId());
    }

private:
    wxEvtHandler& owner;
};

}
