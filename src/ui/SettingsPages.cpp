#include "ui/SettingsPages.h"

#include "base/SettingsMessages.h"
#include "dictionary/TextHolder.h"
#include "settings/SettingsChoices.h"

#include <utility>

#include <wx/statbox.h>

namespace tarvin {

namespace {

wxSizer* MakeFilesGroup(wxWindow* page, SettingsForm& form, const Browsing& browsing) {
    auto* group = MakeGroup(page, text::dialog::filesGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(page, 3, 0);
    form.AddText(
        box, *grid,
        {&DownloadSettings::uploadPath, text::dialog::uploadPath, text::dialog::browseUploadPath, AsFolderSetting},
        browsing.folder);
    form.AddText(box, *grid,
                 {&DownloadSettings::downloadPath, text::dialog::downloadPath, text::dialog::browseDownloadPath,
                  AsFolderSetting},
                 browsing.folder);
    form.AddText(box, *grid, {&DownloadSettings::fileExtension, text::dialog::fileExtension, {}, AsExtensionSetting},
                 {});
    Fill(group, grid);
    return group;
}

wxSizer* MakeLogGroup(wxWindow* page, SettingsForm& form, const Browsing& browsing) {
    auto* group = MakeGroup(page, text::dialog::logGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(page, 3, 0);
    TextField& field = form.AddText(
        box, *grid, {&DownloadSettings::logFile, text::dialog::logFile, text::dialog::browseLogFile}, browsing.logFile);
    Fill(group, grid);
    wxCheckBox* const writeLog = form.AddCheckBox(box, text::dialog::writeLog, &DownloadSettings::writeLog);
    group->Add(writeLog, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, page->FromDIP(6)));
    const auto follow = [&field, writeLog] { field.Enable(writeLog->IsChecked()); };
    writeLog->Bind(wxEVT_CHECKBOX, [&form, &field, follow](wxCommandEvent&) {
        follow();
        form.FieldChanged(field);
    });
    follow();
    return group;
}

wxSizer* MakeUploadGroup(wxWindow* page, SettingsForm& form) {
    auto* group = MakeGroup(page, text::dialog::checkGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* column = new wxBoxSizer(wxVERTICAL);
    auto* grid = MakeGrid(page, 2, 0);
    form.AddNumberedChoice(box, *grid, text::dialog::incomingCheck, text::tip::incomingCheck,
                           {incomingCheckChoices.begin(), incomingCheckChoices.end()}, &DownloadSettings::incomingCheck,
                           incomingCheckEnd);
    column->Add(grid, wxSizerFlags().Expand());
    form.AddEffectNote(box, *column, &DownloadSettings::incomingCheck);
    form.AddNumber(box, *column, {&DownloadSettings::replacedFilesKept, text::dialog::replacedFilesKept});
    form.AddNumber(box, *column,
                   {&DownloadSettings::silenceSeconds, text::settingsPage::silence, text::settingsTip::silence});
    Fill(group, column);
    return group;
}

wxSizer* MakeCallsGroup(wxWindow* page, SettingsForm& form) {
    auto* group = MakeGroup(page, text::settingsPage::callsGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* column = new wxBoxSizer(wxVERTICAL);
    form.AddNumber(box, *column,
                   {&DownloadSettings::attentionMinutes, text::settingsPage::attention, text::settingsTip::attention});
    column->Add(form.AddCheckBox(box, text::settingsPage::sound, &DownloadSettings::callsWithSound));
    Fill(group, column);
    return group;
}

// Each under the name that its speakers know.
std::vector<KelText> Languages() {
    std::vector<KelText> names = {text::settingsPage::systemLanguage, u"English"};
    for (const DictionaryLanguage& language : Dictionary().Languages())
        names.push_back(language.name);
    return names;
}

wxSizer* MakeHistoryGroup(wxWindow* page, SettingsForm& form, std::function<bool()> showAllMessages) {
    auto* group = MakeGroup(page, text::settingsPage::historyGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* column = new wxBoxSizer(wxVERTICAL);
    form.AddNumber(
        box, *column,
        {&DownloadSettings::historyYears, text::settingsPage::historyYears, text::settingsTip::historyYears});
    auto* button = new wxButton(box, wxID_ANY, ToWx(text::settingsPage::showAllMessages));
    button->SetToolTip(ToWx(text::settingsTip::showAllMessages));
    auto* done = new wxStaticText(box, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize, wxST_NO_AUTORESIZE);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(button, wxSizerFlags().CenterVertical());
    row->Add(done, wxSizerFlags(1).CenterVertical().Border(wxLEFT, page->FromDIP(8)));
    column->Add(row, wxSizerFlags().Expand());
    button->Bind(wxEVT_BUTTON, [done, showAll = std::move(showAllMessages)](wxCommandEvent&) {
        done->SetLabel(
            ToWx(showAll() ? text::settingsNote::allMessagesShown : text::settingsNote::messagesShownForNow));
    });
    Fill(group, column);
    return group;
}

wxPanel* MakePage(wxWindow* parent) {
    auto* page = new wxPanel(parent);
    page->SetSizer(new wxBoxSizer(wxVERTICAL));
    return page;
}

void Add(wxWindow* page, wxSizer* content) {
    page->GetSizer()->Add(content, wxSizerFlags().Expand().Border(wxALL, page->FromDIP(6)));
}

}

wxWindow* MakeFilesPage(wxWindow* parent, SettingsForm& form, const Browsing& browsing) {
    wxPanel* const page = MakePage(parent);
    Add(page, MakeFilesGroup(page, form, browsing));
    Add(page, MakeLogGroup(page, form, browsing));
    // This page has room for it.
    auto* grid = MakeGrid(page, 3, 0);
    form.AddOptionalChoice(page, *grid, text::settingsPage::language, text::settingsTip::language, Languages(),
                           &DownloadSettings::language);
    grid->Add(new wxStaticText(page, wxID_ANY, ToWx(text::settingsNote::nextStart)), wxSizerFlags().CenterVertical());
    auto* note = new wxBoxSizer(wxVERTICAL);
    note->Add(grid, wxSizerFlags().Expand());
    note->Add(new wxStaticText(page, wxID_ANY, ToWx(text::settingsNote::browsed)));
    Add(page, note);
    return page;
}

wxWindow* MakeCallsPage(wxWindow* parent, SettingsForm& form, std::function<bool()> showAllMessages) {
    wxPanel* const page = MakePage(parent);
    Add(page, MakeUploadGroup(page, form));
    Add(page, MakeCallsGroup(page, form));
    Add(page, MakeHistoryGroup(page, form, std::move(showAllMessages)));
    return page;
}

}
