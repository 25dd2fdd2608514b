#pragma once
// Shows dialogs that have to be answered. Unlike the toolkit's own way it leaves the main window alone: its owner
// decides what may still be done there, and the window can be closed while a dialog is open. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <vector>

#include <wx/weakref.h>

namespace tarvin {

class ModalLoop {
public:
    // `enable` is called with false when the first dialog opens and with true when the last has gone.
    explicit ModalLoop(std::function<void(bool)> enable) : enableInput(std::move(enable)) {}

    // Returns when the dialog has been hidden, with its return code; wxID_CANCEL if it was closed with the window.
    int Run(wxDialog& dialog);
    // For the system's own dialogs, which bring their own loop.
    int RunNative(wxDialog& dialog);

    bool IsRunning() const { return !open.empty(); }
    // The dialog on top; none if none is open.
    wxWindow* Top() const { return open.empty() ? nullptr : open.back().dialog; }

    // Closes all dialogs, the last opened first, and opens no more. Returns before they have gone.
    void CloseAll();

private:
    struct Open {
        wxDialog* dialog;
        bool isNative;
        wxWindowRef focused; // what gets the keyboard back
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
