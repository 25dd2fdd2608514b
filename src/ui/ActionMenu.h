#pragma once
// A menu whose items bring their actions. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <utility>

namespace tarvin {

class ActionMenu : public wxMenu {
public:
    void Add(KelTextView label, bool isEnabled, std::function<void()> action) {
        wxMenuItem* item = Append(wxID_ANY, ToWx(label));
        item->Enable(isEnabled);
        Bind(
            wxEVT_MENU, [kept = std::move(action)](wxCommandEvent&) { kept(); }, item->GetId());
    }
};

}
