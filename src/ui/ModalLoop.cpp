#include "ui/ModalLoop.h"

#include <wx/evtloop.h>

namespace tarvin {

void ModalLoop::Push(Open entry) {
    entry.focused = wxWindow::FindFocus();
    if (open.empty())
        enableInput(false);
    else
        open.back().dialog->Disable();
    open.push_back(entry);
}

void ModalLoop::Pop() {
    const wxWindowRef focused = open.back().focused;
    open.pop_back();
    if (open.empty())
        enableInput(true);
    else
        open.back().dialog->Enable();
    // Loops are nested: the next dialog can only be closed when this call has returned to its loop.
    if (isClosing)
        handler.CallAfter([this] { CloseTop(); });
    else if (focused)
        focused->SetFocus();
}

int ModalLoop::Run(wxDialog& dialog) {
    if (isClosing)
        return wxID_CANCEL;
    Push({&dialog, false, {}});
    wxGUIEventLoop loop;
    bool isLoopRunning = false;
    // The dialog may be hidden before its loop runs, and a loop that does not run cannot be ended.
    const auto endLoop = [&loop, &isLoopRunning](wxShowEvent& event) {
        event.Skip();
        if (!event.IsShown() && isLoopRunning)
            loop.ScheduleExit();
    };
    dialog.Bind(wxEVT_SHOW, endLoop);
    // For a dialog that is hidden without an answer.
    dialog.SetReturnCode(wxID_CANCEL);
    dialog.Show();
    dialog.Raise();
    isLoopRunning = true;
    if (dialog.IsShown())
        loop.Run();
    dialog.Unbind(wxEVT_SHOW, endLoop);
    Pop();
    return isClosing ? static_cast<int>(wxID_CANCEL) : dialog.GetReturnCode();
}

int ModalLoop::RunNative(wxDialog& dialog) {
    if (isClosing)
        return wxID_CANCEL;
    Push({&dialog, true, {}});
    const int answer = dialog.ShowModal();
    Pop();
    return isClosing ? static_cast<int>(wxID_CANCEL) : answer;
}

void ModalLoop::CloseAll() {
    isClosing = true;
    CloseTop();
}

// Each dialog that closes lets Pop close the next one.
void ModalLoop::CloseTop() {
    if (open.empty())
        return;
    if (!open.back().isNative)
        open.back().dialog->Hide();
    else if (open.back().dialog->IsModal())
        open.back().dialog->EndModal(wxID_CANCEL);
}

}
