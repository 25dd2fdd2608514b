#include "ui/FindBar.h"

#include "base/TrafficMessages.h"
#include "ui/Accessibility.h"

#include <utility>

namespace tarvin {

FindBar::FindBar(wxWindow* parent, Owner owner)
    : wxPanel(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxTAB_TRAVERSAL, "find bar"),
      owner(std::move(owner)) {
    const int gap = FromDIP(4);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(new wxStaticText(this, wxID_ANY, ToWx(text::traffic::find)), wxSizerFlags().CenterVertical());
    field = new wxTextCtrl(this, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER);
    NameControl(*field, ToWx(text::traffic::findField));
    field->SetToolTip(ToWx(text::traffic::findTip));
    constexpr int leastWidth = 60;
    field->SetMinSize(wxSize(FromDIP(leastWidth), -1));
    field->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { this->owner.typed(); });
    row->Add(field, wxSizerFlags(1).CenterVertical().Border(wxLEFT, gap));
    const auto add = [&](wxButton* button) { row->Add(button, wxSizerFlags().CenterVertical().Border(wxLEFT, gap)); };
    add(AddButton(text::traffic::previous, [this] { this->owner.find(false); }));
    add(AddButton(text::traffic::next, [this] { this->owner.find(true); }));
    wxButton* close = AddButton(u"\u00D7", [this] { this->owner.close(); });
    NameControl(*close, ToWx(text::traffic::closeFind));
    close->SetToolTip(ToWx(text::traffic::closeFind));
    add(close);
    auto* column = new wxBoxSizer(wxVERTICAL);
    column->Add(row, wxSizerFlags().Expand().Border(wxALL, gap));
    result = new wxStaticText(this, wxID_ANY, wxString());
    result->Hide();
    column->Add(result, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    SetSizer(column);
    Bind(wxEVT_CHAR_HOOK, &FindBar::OnCharHook, this);
}

wxButton* FindBar::AddButton(KelTextView caption, std::function<void()> action) {
    auto* button = new wxButton(this, wxID_ANY, ToLabel(caption), wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
    button->Bind(wxEVT_BUTTON, [kept = std::move(action)](wxCommandEvent&) { kept(); });
    return button;
}

// Before the window's default button gets Enter.
void FindBar::OnCharHook(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    const bool isEnter = key == WXK_RETURN || key == WXK_NUMPAD_ENTER;
    if (isEnter && field->HasFocus())
        owner.find(!event.ShiftDown());
    else if (key == WXK_ESCAPE)
        owner.close();
    else
        event.Skip();
}

KelText FindBar::Wanted() const {
    return FromWx(field->GetValue());
}

void FindBar::TakeFocus() {
    field->SetFocus();
    field->SelectAll();
}

void FindBar::ShowResult(const wxString& newResult) {
    if (newResult == result->GetLabel())
        return;
    result->SetLabel(newResult);
    result->Show(!newResult.empty());
    // The bar grows by the line.
    GetParent()->Layout();
}

}
