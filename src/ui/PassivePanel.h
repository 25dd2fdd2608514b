#pragma once
// A panel that only shows something: the Tab key and a click leave the keyboard where it is. User-interface thread.

#include "ui/Wx.h"

namespace tarvin {

class PassivePanel : public wxPanel {
public:
    PassivePanel(wxWindow* parent, const wxSize& size, long style, const wxString& name)
        : wxPanel(parent, wxID_ANY, wxDefaultPosition, size, style, name) {
        // A panel without controls would take the keyboard itself, and the user would see it nowhere.
        m_container.DisableSelfFocus();
    }
};

}
