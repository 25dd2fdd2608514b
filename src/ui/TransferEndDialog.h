#pragma once
// The dialog of a transfer by hand: modeless, without a close box, beside the main window. Each of its buttons hides
// it. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <vector>

namespace tarvin {

class TransferEndDialog : public wxDialog {
public:
    struct Button {
        wxWindowID id;
        KelTextView label;
        std::function<void()> action;
    };

    // From left to right. The last button is the default one. F1 calls `showHelp`.
    TransferEndDialog(wxWindow* owner, KelTextView caption, const wxString& name, const std::vector<Button>& buttons,
                      std::function<void()> showHelp);

    // Shows the dialog beside its owner, or hides it. A dialog whose button was pressed stays hidden until the next
    // Appear(false): a call with true before that was made before the button took effect.
    void Appear(bool shallBeShown);

private:
    void AddButton(wxSizer& row, const Button& description, bool isDefault);
    void PlaceBesideOwner();

    bool isPressed = false;
    bool isWanted = false; // by the last Appear, unless a button was pressed since
};

// For a file that is sent by hand.
TransferEndDialog* MakeDownloadEndDialog(wxWindow* owner, std::function<void()> showHelp, std::function<void()> cancel);

// For a file that is received by hand. The bytes of such a transfer do not tell its end: the user says when it is
// complete.
TransferEndDialog* MakeUploadEndDialog(wxWindow* owner, std::function<void()> showHelp, std::function<void()> cancel,
                                       std::function<void()> complete);

}
