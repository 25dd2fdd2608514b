#include "ui/NumberDialog.h"

#include "base/WindowMessages.h"
#include "transfer/NcFilePath.h"
#include "ui/Accessibility.h"
#include "ui/HelpBook.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <utility>

namespace tarvin {

namespace {

// The controller sends these characters only. The file names of some systems end neither with a blank nor with a dot.
bool IsNumber(KelTextView number) {
    const bool isPrintable =
        std::all_of(number.begin(), number.end(), [](char16_t unit) { return unit >= 0x20 && unit <= 0x7E; });
    return isPrintable && IsUsableFileNumber(ToUtf8(KelText(number)));
}

KelText WithoutZeros(KelTextView number) {
    number = Trimmed(number);
    number.remove_prefix(std::min(number.find_first_not_of(u'0'), number.size()));
    return KelText(number);
}

}

KelText SuggestedNumber(KelTextView fileName) {
    const KelText number = WithoutZeros(fileName.substr(0, fileName.rfind(u'.')));
    return IsNumber(number) ? number : KelText();
}

NumberDialog::NumberDialog(wxWindow* parent, KelTextView fileName, KelTextView number, std::function<void()> showHelp)
    : wxDialog(parent, wxID_ANY, ToWx(text::caption::sendingFile), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE, "File Number"),
      edit(new wxTextCtrl(this, wxID_ANY, ToWx(number), wxDefaultPosition, wxDefaultSize, wxTE_PROCESS_ENTER)) {
    const int gap = FromDIP(6);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(new wxStaticText(this, wxID_ANY, ToLabel(Filled(text::dialog::fileNumber, {fileName}))),
             wxSizerFlags().Border(wxALL, gap));
    NameControl(*edit, ToWx(text::dialog::fileNumberName));
    all->Add(edit, wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, gap));
    problem = std::make_unique<FieldMessage>(this, FieldMessage::Kind::Problem);
    all->Add(problem->Sizer(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, gap));
    auto* buttons = new wxStdDialogButtonSizer;
    auto* confirm = new wxButton(this, wxID_OK, ToWx(text::dialog::ok));
    confirm->SetDefault();
    auto* cancel = new wxButton(this, wxID_CANCEL, ToWx(text::dialog::cancel));
    for (wxButton* button : {confirm, cancel}) {
        MakeTouchable(*button);
        buttons->AddButton(button);
    }
    buttons->Realize();
    all->Add(buttons, wxSizerFlags().Right().Border(wxALL, gap));
    SetSizerAndFit(all);
    CentreOnParent();
    edit->Bind(wxEVT_TEXT_ENTER, [this](wxCommandEvent&) { Confirm(); });
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Confirm(); }, wxID_OK);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Finish(wxID_CANCEL); }, wxID_CANCEL);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Finish(wxID_CANCEL); });
    BindHelpKey(*this, std::move(showHelp));
    edit->SetFocus();
    edit->SelectAll();
}

KelText NumberDialog::Number() const {
    return WithoutZeros(FromWx(edit->GetValue()));
}

void NumberDialog::Confirm() {
    if (IsNumber(Number())) {
        Finish(wxID_OK);
        return;
    }
    problem->Say(ToWx(text::setting::badNumber));
    Fit();
    edit->SetFocus();
}

void NumberDialog::Finish(int result) {
    SetReturnCode(result);
    Hide();
}

}
