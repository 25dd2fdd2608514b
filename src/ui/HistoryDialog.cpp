#include "ui/HistoryDialog.h"

#include "base/HistoryMessages.h"
#include "files/NativeFile.h"
#include "history/HistoryOutput.h"
#include "history/HistoryTime.h"
#include "history/HistoryWords.h"
#include "ui/Accessibility.h"
#include "ui/HelpBook.h"
#include "ui/Pictures.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include <wx/display.h>
#include <wx/filedlg.h>

namespace tarvin {

namespace {

constexpr int typingPeriod = 300; // milliseconds
constexpr int dayCounts[] = {1, 7, 30, 365, 0};
constexpr int firstDayCount = 2;
// Tells spreadsheets that the file is UTF-8.
constexpr char utf8Mark[] = "\xEF\xBB\xBF";

KelText DayText(int dayCount) {
    if (dayCount == 0)
        return text::historyDialog::allDays;
    return dayCount == 1 ? KelText(text::historyDialog::today)
                         : Filled(text::historyDialog::lastDays, {ToText(dayCount)});
}

// Runs on a thread of its own. Gives a message for the user.
KelText WriteCsv(const std::filesystem::path& database, const HistoryFilter& filter,
                 const std::filesystem::path& file) {
    const auto rows = ReadHistory(database, filter);
    if (!rows)
        return Filled(text::historyDialog::notRead, {rows.Reason().text});
    std::ostringstream content;
    content << utf8Mark;
    WriteHistory(content, *rows, HistoryForm::Csv);
    if (const auto written = ReplaceWholeFile(file, content.str()); !written)
        return Filled(text::historyDialog::notExported, {FromPath(file), written.Reason().text});
    return Filled(text::historyDialog::exported, {ToText(static_cast<std::int64_t>(rows->size())), FromPath(file)});
}

}

HistoryDialog::HistoryDialog(wxWindow* parent, std::filesystem::path database, KelText machine, Owner owner)
    : wxDialog(parent, wxID_ANY, ToWx(Filled(text::historyDialog::caption, {machine})), wxDefaultPosition,
               wxDefaultSize, wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER | wxMAXIMIZE_BOX, "History"),
      database(std::move(database)),
      machine(std::move(machine)),
      user(std::move(owner)) {
    SetIcons(ProgramIcons());
    const int gap = FromDIP(6);
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(AddFilters(), wxSizerFlags().Expand().Border(wxALL, gap));
    table = new HistoryTable(this);
    table->SetMinSize(FromDIP(wxSize(560, 240)));
    all->Add(table, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT, gap));
    message = new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                               wxST_NO_AUTORESIZE | wxST_ELLIPSIZE_MIDDLE);
    all->Add(message, wxSizerFlags().Expand().Border(wxALL, gap));
    all->Add(AddButtons(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, gap));
    SetSizerAndFit(all);
    wxSize size = FromDIP(wxSize(1100, 560));
    size.DecTo(wxDisplay(parent != nullptr ? parent : this).GetClientArea().GetSize());
    SetSize(size);
    CentreOnParent();

    table->Bind(wxEVT_DATAVIEW_SELECTION_CHANGED, [this](wxDataViewEvent&) { ShowSelection(); });
    table->Bind(wxEVT_DATAVIEW_ITEM_ACTIVATED, [this](wxDataViewEvent&) { OpenFolder(); });
    typingTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Read(); });
    Bind(
        wxEVT_BUTTON, [this](wxCommandEvent&) { Finish(); }, wxID_CANCEL);
    Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Finish(); });
    BindHelpKey(*this, user.showHelp);
    ShowMachines({});
    table->SetFocus();
    Read();
}

wxSizer* HistoryDialog::AddFilters() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    AddLabel(*row, text::historyDialog::machine);
    machines = AddChoice(*row, text::historyDialog::machine);
    AddLabel(*row, text::historyDialog::number);
    number = new wxTextCtrl(this, wxID_ANY);
    number->SetHint(ToWx(text::historyDialog::numberHint));
    number->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { typingTimer.StartOnce(typingPeriod); });
    AddFilter(*row, *number, text::historyDialog::number);
    AddLabel(*row, text::historyDialog::days);
    days = AddChoice(*row, text::historyDialog::days);
    for (const int dayCount : dayCounts)
        days->Append(ToWx(DayText(dayCount)));
    days->SetSelection(firstDayCount);
    AddLabel(*row, text::historyDialog::outcome);
    outcome = AddChoice(*row, text::historyDialog::outcome);
    outcome->Append(ToWx(text::historyDialog::allOutcomes));
    for (const TransferOutcome each : allOutcomes)
        outcome->Append(ToWx(LabelFor(each)));
    outcome->SetSelection(0);
    return row;
}

// Comes right before its control in the order of creation: the key of the label then leads there.
void HistoryDialog::AddLabel(wxSizer& row, KelTextView label) {
    row.Add(new wxStaticText(this, wxID_ANY, ToWx(label)), wxSizerFlags().CenterVertical());
}

wxChoice* HistoryDialog::AddChoice(wxSizer& row, KelTextView label) {
    auto* list = new wxChoice(this, wxID_ANY);
    list->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { Read(); });
    AddFilter(row, *list, label);
    return list;
}

void HistoryDialog::AddFilter(wxSizer& row, wxControl& control, KelTextView label) {
    NameControl(control, wxControl::RemoveMnemonics(ToWx(label)));
    MakeTouchable(control);
    row.Add(&control, wxSizerFlags(1).CenterVertical().Border(wxLEFT | wxRIGHT, FromDIP(6)));
}

wxButton* HistoryDialog::AddButton(wxSizer& row, KelTextView label, void (HistoryDialog::*act)()) {
    auto* button = new wxButton(this, wxID_ANY, ToWx(label));
    MakeTouchable(*button);
    button->Bind(wxEVT_BUTTON, [this, act](wxCommandEvent&) { (this->*act)(); });
    row.Add(button, wxSizerFlags().Border(wxRIGHT, FromDIP(8)));
    return button;
}

wxSizer* HistoryDialog::AddButtons() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    openFolder = AddButton(*row, text::historyDialog::openFolder, &HistoryDialog::OpenFolder);
    openFolder->Disable();
    exportCsv = AddButton(*row, text::historyDialog::exportCsv, &HistoryDialog::Export);
    AddButton(*row, text::historyDialog::refresh, &HistoryDialog::Read);
    row->AddStretchSpacer();
    // Escape presses it.
    SetEscapeId(AddButton(*row, text::historyDialog::close, &HistoryDialog::Finish)->GetId());
    return row;
}

HistoryFilter HistoryDialog::ChosenFilter() const {
    HistoryFilter filter;
    const int chosenMachine = machines->GetSelection();
    if (chosenMachine > 0)
        filter.machine = machineNames[static_cast<std::size_t>(chosenMachine - 1)];
    filter.number = Trimmed(FromWx(number->GetValue()));
    const int dayCount = dayCounts[std::max(days->GetSelection(), 0)];
    if (dayCount > 0)
        filter.from = StartOfDayBefore(std::chrono::system_clock::now(), dayCount - 1);
    const int chosenOutcome = outcome->GetSelection();
    if (chosenOutcome > 0)
        filter.outcome = allOutcomes[chosenOutcome - 1];
    return filter;
}

void HistoryDialog::Read() {
    typingTimer.Stop();
    isReadingOutdated = reading.IsRunning();
    if (isReadingOutdated)
        return;
    HistoryFilter filter = ChosenFilter();
    // One more than the table takes, to know whether there are more.
    filter.mostRows = mostRows + 1;
    reading.Start(
        [path = database, filter = std::move(filter)](BackgroundWork<Reading>::Stop) -> Reading {
            auto rows = ReadHistory(path, filter);
            return {std::move(rows), ReadMachines(path).ValueOr({})};
        },
        [this](Reading done) {
            if (isReadingOutdated)
                Read();
            else
                ShowReading(std::move(done));
        });
    Say(text::historyDialog::reading);
}

void HistoryDialog::ShowReading(Reading done) {
    ShowMachines(done.machines);
    if (!done.rows) {
        table->Show(std::vector<TransferRecord>());
        Say(Filled(text::historyDialog::notRead, {done.rows.Reason().text}));
    } else {
        const bool areMore = done.rows->size() > mostRows;
        if (areMore)
            done.rows->pop_back();
        Say(Filled(areMore ? text::historyDialog::newestShown : text::historyDialog::shown,
                   {ToText(static_cast<std::int64_t>(done.rows->size()))}));
        table->Show(std::move(*done.rows));
    }
    openFolder->Disable();
}

// Keeps the chosen machine, whatever is there.
void HistoryDialog::ShowMachines(const std::vector<KelText>& names) {
    const int before = machines->GetSelection();
    const KelText chosen = before > 0    ? machineNames[static_cast<std::size_t>(before - 1)]
                           : before == 0 ? KelText()
                                         : machine;
    std::vector<KelText> entries = names;
    for (const KelText& needed : {machine, chosen}) {
        if (!needed.empty() && std::find(entries.begin(), entries.end(), needed) == entries.end())
            entries.push_back(needed);
    }
    if (entries == machineNames)
        return;
    machineNames = std::move(entries);
    machines->Clear();
    machines->Append(ToWx(text::historyDialog::allMachines));
    for (const KelText& name : machineNames)
        machines->Append(ToWx(name));
    const auto place = std::find(machineNames.begin(), machineNames.end(), chosen);
    machines->SetSelection(chosen.empty() ? 0 : static_cast<int>(place - machineNames.begin()) + 1);
}

// A reason may be longer than its column, and a path has none.
void HistoryDialog::ShowSelection() {
    const TransferRecord* row = table->Selected();
    openFolder->Enable(row != nullptr);
    if (row != nullptr)
        Say(row->reason.empty() ? row->path : row->path + u": " + row->reason);
}

void HistoryDialog::OpenFolder() {
    const TransferRecord* row = table->Selected();
    if (row != nullptr && !row->path.empty())
        user.openFolder(ToPath(row->path).parent_path());
}

void HistoryDialog::Export() {
    wxFileDialog dialog(this, ToWx(text::historyDialog::exportCaption), "", ToWx(text::historyDialog::csvFileName),
                        ToWx(text::historyDialog::csvFiles), wxFD_SAVE | wxFD_OVERWRITE_PROMPT);
    // Some systems confirm an empty name.
    if (user.runNative(dialog) != wxID_OK || dialog.GetPath().empty() || exporting.IsRunning())
        return;
    exporting.Start([path = database, filter = ChosenFilter(), file = ToPath(FromWx(dialog.GetPath()))](
                        BackgroundWork<KelText>::Stop) { return WriteCsv(path, filter, file); },
                    [this](const KelText& done) {
                        exportCsv->Enable();
                        Say(done);
                    });
    exportCsv->Disable();
    Say(text::historyDialog::writing);
}

void HistoryDialog::Finish() {
    SetReturnCode(wxID_CANCEL);
    if (IsModal())
        EndModal(wxID_CANCEL);
    else
        Hide();
}

void HistoryDialog::Say(const KelText& newMessage) {
    message->SetLabel(ToLabel(newMessage));
}

}
