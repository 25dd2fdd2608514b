#include "ui/SettingsDialog.h"

#include "base/SettingsMessages.h"
#include "base/WindowMessages.h"
#include "ui/Accessibility.h"
#include "ui/FilePattern.h"
#include "ui/HelpBook.h"
#include "ui/Pictures.h"
#include "ui/SettingsPages.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <utility>

#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/notebook.h>

namespace tarvin {

SettingsDialog::SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner)
    : wxDialog(parent, wxID_ANY, ToWx(text::caption::downloadSettings), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "Download Settings"),
      user(std::move(owner)),
      form(std::move(settings), {[this] { Confirm(); }, [this] { FitHeight(); }}) {
    SetIcons(ProgramIcons());
    const int gap = FromDIP(6);
    // The toolkit complains of controls that are laid out in less room than they need, so the pages begin large.
    pages = new wxNotebook(this, wxID_ANY, wxDefaultPosition, FromDIP(wxSize(1000, 800)));
    pages->SetMinSize(wxDefaultSize);
    NameControl(*pages, ToWx(text::label::settingsPages));
    const auto browseForFolder = [this](TextField& field) { BrowseForFolder(field); };
    const auto browseForLogFile = [this](TextField& field) { BrowseForLogFile(field); };
    pages->AddPage(MakeLinePage(pages, form, std::move(ports)), ToWx(text::settingsPage::line));
    pages->AddPage(MakeFilesPage(pages, form, {browseForFolder, browseForLogFile}), ToWx(text::settingsPage::files));
    pages->AddPage(MakeCallsPage(pages, form, user.showAllMessages), ToWx(text::settingsPage::calls));
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(pages, wxSizerFlags(1).Expand().Border(wxALL, gap));
    all->Add(new wxStaticText(this, wxID_ANY, ToWx(text::settingsNote::saved)),
             wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT, 2 * gap));
    all->Add(MakeButtons(), wxSizerFlags().Expand().Border(wxALL, gap));
    SetSizer(all);
    form.ShowEffects();
    FitHeight();
    CentreOnParent();
    // After the window is shown: some systems move the focus to another field while they show it.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        event.Skip();
        if (event.IsShown())
            CallAfter(
                [this] { FindWindowByName(wxControl::RemoveMnemonics(ToWx(text::dialog::port)), this)->SetFocus(); });
    });
}

wxSizer* SettingsDialog::MakeButtons() {
    auto* buttons = new wxStdDialogButtonSizer;
    auto* confirm = new wxButton(this, wxID_OK, ToWx(text::dialog::ok));
    confirm->SetDefault();
    auto* cancel = new wxButton(this, wxID_CANCEL, ToWx(text::dialog::cancel));
    auto* help = new wxButton(this, wxID_HELP, ToWx(text::dialog::help));
    for (wxButton* button : {confirm, cancel, help}) {
        MakeTouchable(*button);
        buttons->AddButton(button);
    }
    buttons->Realize();
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Confirm(); }, wxID_OK);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Finish(wxID_CANCEL); }, wxID_CANCEL);
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { user.showHelp(); }, wxID_HELP);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Finish(wxID_CANCEL); });
    BindHelpKey(*this, user.showHelp);
    return buttons;
}

void SettingsDialog::BrowseForFolder(TextField& field) {
    const bool isUpload = field.Text() == &DownloadSettings::uploadPath;
    const KelTextView title = isUpload ? text::caption::uploadPath : text::caption::downloadPath;
    wxDirDialog dialog(this, ToWx(title), ToWx(form.Given().*field.Text()));
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, AsFolderSetting(FromWx(dialog.GetPath())));
}

void SettingsDialog::BrowseForLogFile(TextField& field) {
    const std::filesystem::path current = ToPath(form.Given().logFile);
    // Without wxFD_OVERWRITE_PROMPT: the log appends to an existing file.
    const KelText filters =
        Filled(text::dialog::activityLogFilters, {FromWx(PatternFor("txt")), FromWx(wxFileSelectorDefaultWildcardStr)});
    wxFileDialog dialog(this, ToWx(text::caption::saveLogFile), ToWx(FromPath(current.parent_path())),
                        ToWx(FromPath(current.filename())), ToWx(filters), wxFD_SAVE);
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, FromWx(dialog.GetPath()));
}

void SettingsDialog::TakeBrowsed(TextField& field, const KelText& text) {
    if (text.empty())
        return;
    form.TakeBrowsed(field, text);
    user.writeThrough(form.Given());
}

void SettingsDialog::Confirm() {
    const SettingsForm::Verdict verdict = form.Check();
    if (verdict.isAccepted)
        Finish(wxID_OK);
    else
        ShowField(*verdict.first);
}

// Shows the page with the control, and gives it the keyboard.
void SettingsDialog::ShowField(wxWindow& control) {
    for (std::size_t number = 0; number < pages->GetPageCount(); ++number) {
        if (pages->GetPage(number)->IsDescendant(&control))
            pages->ChangeSelection(number);
    }
    control.SetFocus();
    if (auto* edit = dynamic_cast<wxTextCtrl*>(&control))
        edit->SelectAll();
}

// Makes the dialog as high as its content, if it is not high enough, and leaves its width to the user.
void SettingsDialog::FitHeight() {
    const wxSize fitting = GetSizer()->CalcMin();
    SetMinClientSize(fitting);
    wxSize size = GetClientSize();
    size.IncTo(fitting);
    SetClientSize(size);
    Layout();
}

void SettingsDialog::Finish(int result) {
    // Either of the two ways to show the dialog may be in use.
    if (IsModal()) {
        EndModal(result);
    } else {
        SetReturnCode(result);
        Hide();
    }
}

}
