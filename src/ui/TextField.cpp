#include "ui/TextField.h"

#include "ui/UiText.h"

namespace tarvin {

namespace {

constexpr int editWidth = 112; // in dialog units

wxTextCtrl* MakeEdit(wxWindow* parent, const wxString& label) {
    auto* edit = new wxTextCtrl(parent, wxID_ANY);
    edit->SetName(wxControl::RemoveMnemonics(label));
    edit->SetMinSize(wxSize(parent->ConvertDialogToPixels(wxSize(editWidth, 0)).GetWidth(), -1));
    return edit;
}

}

TextField::TextField(wxWindow* parent, wxFlexGridSizer& grid, Description what, const DownloadSettings& given,
                     Handlers handlers)
    : description(std::move(what)),
      label(new wxStaticText(parent, wxID_ANY, description.label)),
      edit(MakeEdit(parent, description.label)),
      bound(edit, given.*description.setting),
      message(parent, FieldMessage::Kind::Problem) {
    const int gap = parent->FromDIP(3);
    grid.Add(label, wxSizerFlags().CenterVertical().Border(wxTOP | wxBOTTOM, gap));
    grid.Add(edit, wxSizerFlags().Expand().Border(wxTOP | wxBOTTOM, gap));
    edit->Bind(wxEVT_TEXT, [changed = handlers.changed](wxCommandEvent&) { changed(); });
    if (description.browseTip.empty()) {
        grid.AddSpacer(0);
    } else {
        browse = new wxButton(parent, wxID_ANY, "...", wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
        browse->SetName(description.browseTip);
        browse->SetToolTip(description.browseTip);
        browse->Bind(wxEVT_BUTTON, [ask = handlers.browse](wxCommandEvent&) { ask(); });
        grid.Add(browse, wxSizerFlags().CenterVertical().Border(wxTOP | wxBOTTOM, gap));
    }
    grid.AddSpacer(0);
    grid.Add(message.Sizer(), wxSizerFlags().Expand().Border(wxBOTTOM, gap));
    grid.AddSpacer(0);
}

KelText TextField::Value() const {
    auto [text, isNew] = bound.Value();
    return isNew ? description.asSetting(std::move(text)) : text;
}

void TextField::ShowValue() {
    const wxString value = ToWx(Value());
    if (bound.Value().isNew && edit->GetValue() != value)
        edit->ChangeValue(value);
}

void TextField::Focus() {
    edit->SetFocus();
    edit->SelectAll();
}

void TextField::Enable(bool isEnabled) {
    label->Enable(isEnabled);
    edit->Enable(isEnabled);
    if (browse != nullptr)
        browse->Enable(isEnabled);
}

}
