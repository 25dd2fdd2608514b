#pragma once
// Runs dialogs that the user has to answer. The toolkit's own modal loop disables the whole main window. This one
// leaves it alone: its owner chooses the controls that stay enabled, and the window can be closed while a dialog is
// open. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <vector>

#include <wx/weakref.h>

namespace tarvin {

class ModalLoop {
public:
    // Calls `enableInput` with false when the first dialog opens, and with true when the last one has closed.
    explicit ModalLoop(std::function<void(bool)> enableInput) : enableInput(std::move(enableInput)) {}

    // Shows the dialog, returns when it has been hidden, and gives its return code; wxID_CANCEL after CloseAll.
    int Run(wxDialog& dialog);
    // The same for a dialog of the system, which brings a loop of its own.
    int RunNative(wxDialog& dialog);

    bool IsRunning() const { return !open.empty(); }
    // The dialog that was opened last, null without one.
    wxWindow* Top() const { return open.empty() ? nullptr : open.back().dialog; }

    // Closes all dialogs, the last one first, and opens no more. Returns before they have closed.
    void CloseAll();

private:
    struct Open {
        wxDialog* dialog;
        bool isNative;
        wxWindowRef focused; // gets the keyboard back
    };

    void Push(Open entry);
    void Pop();
    void CloseTop();

    std::function<void(bool)> enableInput;
    std::vector<Open> open;
    bool isClosing = false;
    wxEvtHandler handler;
};

}
