#pragma once
// What the two end-of-transfer dialogs have in common: modeless, without a close box, beside the main window whenever
// they appear, and hidden by each of their buttons. User-interface thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class TransferEndDialog : public wxDialog {
public:
    // `showHelp` is for F1.
    TransferEndDialog(wxWindow* owner, const wxString& caption, const wxString& frameName,
                      std::function<void()> showHelp);

    // Shows the dialog beside its owner, or hides it. After a button has been pressed it stays hidden until it has been
    // told to hide: what is wished for meanwhile was wished before the button took effect.
    void Appear(bool shallBeShown);

protected:
    // Adds a button in dialog units; the default one last.
    void AddButton(wxWindowID id, const wxString& label, bool isDefault, std::function<void()> action);
    void Arrange();

private:
    void PlaceBesideOwner();

    wxBoxSizer* row;
    bool isPressed = false;
};

}
