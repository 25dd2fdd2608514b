#include "ui/TransferEndDialog.h"

#include "base/WindowMessages.h"
#include "ui/HelpBook.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <cassert>
#include <utility>

#include <wx/display.h>

namespace tarvin {

TransferEndDialog::TransferEndDialog(wxWindow* owner, KelTextView caption, const wxString& name,
                                     const std::vector<Button>& buttons, std::function<void()> showHelp)
    : wxDialog(owner, wxID_ANY, ToWx(caption), wxDefaultPosition, wxDefaultSize, wxCAPTION, name) {
    assert(!buttons.empty());
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    for (const Button& button : buttons)
        AddButton(*row, button, &button == &buttons.back());
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(row, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(3)));
    // Wide enough for the whole caption, which names the transfer. The content is made wide, and the dialog fitted to
    // it: a size of the dialog with its frame is no use before it is shown. On X11 the toolkit learns the size of the
    // frame then, takes it off the content and moves the dialog to the corner of the screen.
    const int captionWidth = GetTextExtent(GetTitle()).GetWidth() + ConvertDialogToPixels(wxSize(24, 0)).GetWidth();
    column->SetMinSize(captionWidth, wxDefaultCoord);
    SetSizerAndFit(column);
    // Only a button and the end of the transfer close the dialog: without it the transfer could not be ended.
    SetEscapeId(wxID_NONE);
    Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
        if (event.CanVeto())
            event.Veto();
    });
    // GTK shows a window for the first time when the window manager has told the size of its frame, also when it has
    // been hidden again meanwhile: a short file is received faster.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        event.Skip();
        if (event.IsShown() && !isWanted)
            CallAfter([this] { Show(isWanted); });
    });
    BindHelpKey(*this, std::move(showHelp));
}

void TransferEndDialog::AddButton(wxSizer& row, const Button& description, bool isDefault) {
    auto* button = new wxButton(this, description.id, ToWx(description.label));
    const wxSize size = ConvertDialogToPixels(wxSize(50, 14));
    button->SetMinSize(size);
    MakeTouchable(*button);
    button->Bind(wxEVT_BUTTON, [this, action = description.action](wxCommandEvent&) {
        isPressed = true;
        isWanted = false;
        Hide();
        action();
    });
    row.Add(button, wxSizerFlags(1).Border(wxALL, FromDIP(6)));
    if (isDefault) {
        button->SetDefault();
        button->SetFocus();
    }
}

void TransferEndDialog::Appear(bool shallBeShown) {
    if (!shallBeShown)
        isPressed = false;
    if (shallBeShown == IsShown() || isPressed)
        return;
    if (shallBeShown)
        PlaceBesideOwner();
    isWanted = shallBeShown;
    Show(shallBeShown);
    // Some window managers move a new window when it is shown, so it is placed a second time.
    if (shallBeShown)
        PlaceBesideOwner();
}

void TransferEndDialog::PlaceBesideOwner() {
    const wxRect owner = GetParent()->GetScreenRect();
    const int monitor = wxDisplay::GetFromWindow(GetParent());
    const wxRect screen = wxDisplay(monitor == wxNOT_FOUND ? 0u : static_cast<unsigned>(monitor)).GetClientArea();
    // The frame is not known before the dialog is shown. Its owner's is at least as large.
    const wxSize size = GetClientSize() + GetParent()->GetSize() - GetParent()->GetClientSize();
    const int gap = FromDIP(8);
    wxPoint place(owner.GetRight() + gap, owner.GetTop() + owner.GetHeight() / 3);
    if (place.x + size.GetWidth() > screen.GetRight())
        place.x = owner.GetLeft() - gap - size.GetWidth();
    // Without room on either side: over the monitor area, where the status line stays visible.
    if (place.x < screen.GetLeft())
        place = wxPoint(owner.GetRight() - size.GetWidth() - 2 * gap, owner.GetBottom() - size.GetHeight() - 4 * gap);
    place.y = std::clamp(place.y, screen.GetTop(), std::max(screen.GetBottom() - size.GetHeight(), screen.GetTop()));
    SetPosition(place);
}

TransferEndDialog* MakeDownloadEndDialog(wxWindow* owner, std::function<void()> showHelp,
                                         std::function<void()> cancel) {
    return new TransferEndDialog(owner, text::caption::sendingFile, "Download End",
                                 {{wxID_CANCEL, text::dialog::cancelDownload, std::move(cancel)}}, std::move(showHelp));
}

TransferEndDialog* MakeUploadEndDialog(wxWindow* owner, std::function<void()> showHelp, std::function<void()> cancel,
                                       std::function<void()> complete) {
    return new TransferEndDialog(owner, text::caption::receivingFile, "Upload End",
                                 {{wxID_CANCEL, text::dialog::cancelUpload, std::move(cancel)},
                                  {wxID_OK, text::dialog::completeUpload, std::move(complete)}},
                                 std::move(showHelp));
}

}
