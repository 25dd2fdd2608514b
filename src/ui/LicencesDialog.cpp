#include "ui/LicencesDialog.h"

#include "base/MoreMessages.h"
#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/HelpBook.h"
#include "ui/TouchTarget.h"

#include <utility>

namespace tarvin {

namespace {

constexpr int shownColumns = 84;
constexpr int shownLines = 30;

}

LicencesDialog::LicencesDialog(wxWindow* parent, std::function<void()> showHelp)
    : wxDialog(parent, wxID_ANY, ToWx(text::more::licencesCaption), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX, "Licences") {
    const int gap = FromDIP(6);
    auto* words = new wxTextCtrl(this, wxID_ANY, wxString::FromUTF8(licenceText.data(), licenceText.size()),
                                 wxDefaultPosition, wxDefaultSize, wxTE_MULTILINE | wxTE_READONLY | wxTE_DONTWRAP);
    // Licences are set for letters of one width.
    words->SetFont(wxFont(wxFontInfo(GetFont().GetPointSize()).Family(wxFONTFAMILY_TELETYPE)));
    words->SetMinSize(wxSize(shownColumns * words->GetCharWidth(), shownLines * words->GetCharHeight()));
    words->SetInsertionPoint(0);
    NameControl(*words, ToWx(text::more::licencesCaption));
    auto* close = new wxButton(this, wxID_CANCEL, ToWx(text::label::close));
    MakeTouchable(*close);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(words, wxSizerFlags(1).Expand().Border(wxALL, gap));
    all->Add(close, wxSizerFlags().Right().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    SetSizerAndFit(all);
    CentreOnParent();
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Hide(); }, wxID_CANCEL);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Hide(); });
    BindHelpKey(*this, std::move(showHelp));
    words->SetFocus();
}

}
