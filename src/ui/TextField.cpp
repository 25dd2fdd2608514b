#include "ui/TextField.h"

#include "base/WindowMessages.h"
#include "ui/Accessibility.h"

namespace tarvin {

namespace {

// In dialog units. The longest message needs two lines of this width.
constexpr int editWidth = 220;
constexpr int widestMessage = 240;

wxTextCtrl* MakeEdit(wxWindow* parent, KelTextView label) {
    auto* edit = new wxTextCtrl(parent, wxID_ANY);
    NameControl(*edit, wxControl::RemoveMnemonics(ToWx(label)));
    edit->SetMinSize(wxSize(parent->ConvertDialogToPixels(wxSize(editWidth, 0)).GetWidth(), -1));
    return edit;
}

}

TextField::TextField(wxWindow* parent, wxFlexGridSizer& grid, const Description& description,
                     const DownloadSettings& given, const Handlers& handlers)
    : description(description),
      label(new wxStaticText(parent, wxID_ANY, ToWx(description.label))),
      edit(MakeEdit(parent, description.label)),
      bound(edit, given.*description.setting),
      message(parent, FieldMessage::Kind::Problem, {.reservedLines = 2, .widestLine = widestMessage}) {
    const int gap = parent->FromDIP(3);
    grid.Add(label, wxSizerFlags().CenterVertical().Border(wxTOP | wxBOTTOM, gap));
    grid.Add(edit, wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, gap));
    edit->Bind(wxEVT_TEXT, [changed = handlers.changed](wxCommandEvent&) { changed(); });
    if (description.browseTip.empty()) {
        grid.AddSpacer(0);
    } else {
        browse =
            new wxButton(parent, wxID_ANY, ToWx(text::dialog::browse), wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
        const wxString browseTip = ToWx(description.browseTip);
        NameControl(*browse, browseTip);
        browse->SetToolTip(browseTip);
        browse->Bind(wxEVT_BUTTON, [ask = handlers.browse](wxCommandEvent&) { ask(); });
        grid.Add(browse, wxSizerFlags().CenterVertical().Border(wxTOP | wxBOTTOM, gap));
    }
    // The second row of the grid: the message stands below the edit.
    grid.AddSpacer(0);
    grid.Add(message.Sizer(), wxSizerFlags().Expand());
    grid.AddSpacer(0);
}

// Only a typed text is converted: a text as given stays to the code unit.
KelText TextField::Value() const {
    auto [text, isNew] = bound.Value();
    return isNew ? description.asSetting(std::move(text)) : text;
}

void TextField::ShowValue() {
    const wxString value = ToWx(Value());
    // ChangeValue sends no event, which would clear the message of this field.
    if (bound.Value().isNew && edit->GetValue() != value)
        edit->ChangeValue(value);
}

void TextField::Enable(bool isEnabled) {
    label->Enable(isEnabled);
    edit->Enable(isEnabled);
    if (browse != nullptr)
        browse->Enable(isEnabled);
}

}
