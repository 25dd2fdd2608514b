#pragma once
// What the two end-of-transfer dialogs have in common: modeless, without a close box, beside the main window whenever
// they appear, and hidden by each of their buttons. User-interface thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class TransferEndDialog : public wxDialog {
public:
    TransferEndDialog(wxWindow* owner, const wxString& caption, const wxString& frameName);

    // Shows the dialog beside its owner, or hides it.
    void Appear(bool isShown);

protected:
    // Adds a button in dialog units; the default one last.
    void AddButton(wxWindowID id, const wxString& label, bool isDefault, std::function<void()> action);
    void Arrange();

private:
    void PlaceBesideOwner();

    wxBoxSizer* row;
};

}
