#include "ui/TransferEndDialog.h"

#include "ui/HelpKey.h"

#include <algorithm>
#include <utility>

#include <wx/display.h>

namespace tarvin {

TransferEndDialog::TransferEndDialog(wxWindow* owner, const wxString& caption, const wxString& frameName,
                                     std::function<void()> showHelp)
    : wxDialog(owner, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, wxCAPTION, frameName),
      row(new wxBoxSizer(wxHORIZONTAL)) {
    // Only a button ends the transfer, or the transfer itself.
    SetEscapeId(wxID_NONE);
    BindHelpKey(*this, std::move(showHelp));
    Bind(wxEVT_CLOSE_WINDOW, [](wxCloseEvent& event) {
        if (event.CanVeto())
            event.Veto();
    });
}

void TransferEndDialog::AddButton(wxWindowID id, const wxString& label, bool isDefault, std::function<void()> action) {
    auto* button = new wxButton(this, id, label);
    const wxSize size = ConvertDialogToPixels(wxSize(50, 14));
    button->SetMinSize(wxSize(size.GetWidth(), std::max(size.GetHeight(), button->GetBestSize().GetHeight())));
    button->Bind(wxEVT_BUTTON, [this, kept = std::move(action)](wxCommandEvent&) {
        isPressed = true;
        Hide();
        kept();
    });
    row->Add(button, wxSizerFlags(1).Border(wxALL, FromDIP(6)));
    if (isDefault) {
        button->SetDefault();
        button->SetFocus();
    }
}

void TransferEndDialog::Arrange() {
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(row, wxSizerFlags(1).Expand().Border(wxALL, FromDIP(3)));
    SetSizerAndFit(column);
    // Wide enough for the caption, which tells what is going on.
    const int captionWidth = GetTextExtent(GetTitle()).GetWidth() + ConvertDialogToPixels(wxSize(24, 0)).GetWidth();
    SetSize(std::max(GetSize().GetWidth(), captionWidth), GetSize().GetHeight());
}

void TransferEndDialog::Appear(bool shallBeShown) {
    if (!shallBeShown)
        isPressed = false;
    if (shallBeShown == IsShown() || isPressed)
        return;
    if (shallBeShown)
        PlaceBesideOwner();
    Show(shallBeShown);
    // Again: some window managers put a new window where they like.
    if (shallBeShown)
        PlaceBesideOwner();
}

void TransferEndDialog::PlaceBesideOwner() {
    const wxRect owner = GetParent()->GetScreenRect();
    const int monitor = wxDisplay::GetFromWindow(GetParent());
    const wxRect screen = wxDisplay(monitor == wxNOT_FOUND ? 0u : static_cast<unsigned>(monitor)).GetClientArea();
    const wxSize size = GetSize();
    const int gap = FromDIP(8);
    wxPoint place(owner.GetRight() + gap, owner.GetTop() + owner.GetHeight() / 3);
    if (place.x + size.GetWidth() > screen.GetRight())
        place.x = owner.GetLeft() - gap - size.GetWidth();
    // No room on either side: over the monitor area, where it hides no status.
    if (place.x < screen.GetLeft())
        place = wxPoint(owner.GetRight() - size.GetWidth() - 2 * gap, owner.GetBottom() - size.GetHeight() - 4 * gap);
    place.y = std::clamp(place.y, screen.GetTop(), std::max(screen.GetBottom() - size.GetHeight(), screen.GetTop()));
    SetPosition(place);
}

}
