#include "ui/StartDialog.h"

#include "base/FirstUseMessages.h"
#include "base/SettingsMessages.h"
#include "base/StartMessages.h"
#include "files/Installation.h"
#include "protocol/TarvinApp.h"
#include "settings/SettingsChoices.h"
#include "setup/FolderAccess.h"
#include "ui/CalmControls.h"
#include "ui/Pictures.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <wx/dirdlg.h>

namespace tarvin {

namespace {

constexpr KelTextView usualSpeed = u"2400";

// "COM1: FTDI FT232R A10KXYZ (free)".
KelText PortLine(const PortReport& report) {
    KelText line = report.name + u":";
    for (const KelText& part : {report.maker, report.product, report.serialNumber}) {
        if (!part.empty())
            line += u" " + part;
    }
    if (report.product.empty() && report.device != report.name)
        line += u" " + report.device;
    return line + u" (" + DescribeState(report) + u")";
}

// The name of a control for screen readers: its label without the mark of the key.
wxString NameOf(KelTextView label) {
    return wxControl::RemoveMnemonics(ToWx(label));
}

}

StartDialog::StartDialog(std::filesystem::path installation, const std::vector<KelText>& languages)
    : wxDialog(nullptr, wxID_ANY, ToWx(text::startWindow::caption), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "Start"),
      installation(std::move(installation)) {
    SetIcons(ProgramIcons());
    const int gap = FromDIP(6);
    const auto line = wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxTOP, gap);
    auto* all = new wxBoxSizer(wxVERTICAL);
    auto* heading = new wxStaticText(this, wxID_ANY, ToWx(text::startWindow::heading));
    heading->SetFont(GetFont().Bold());
    all->Add(heading, line);
    all->Add(MakeFields(languages), line);
    all->Add(new wxStaticText(this, wxID_ANY, NameOf(text::startWindow::missing)), line);
    // A field, so that commands can be selected and copied, and so that the keyboard reaches it.
    missing =
        new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, FromDIP(wxSize(480, 90)), wxTE_MULTILINE | wxTE_READONLY);
    missing->SetName(NameOf(text::startWindow::missing));
    all->Add(missing, wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxTOP, gap));
    all->Add(
        new wxStaticText(this, wxID_ANY, ToLabel(Filled(text::startWindow::place, {FromPath(this->installation)}))),
        line);
    message = std::make_unique<FieldMessage>(this, FieldMessage::Kind::Problem, FieldMessage::Room{1, 240});
    all->Add(message->Sizer(), line);
    all->Add(MakeButtons(), wxSizerFlags().Expand().Border(wxALL, gap));
    SetSizerAndFit(all);
    CentreOnScreen();
    machine->SetFocus();
    machine->SelectAll();
    Look();
}

KelText StartDialog::MachineName() const {
    return KelText(Trimmed(FromWx(machine->GetValue())));
}

void StartDialog::AddLabel(wxSizer& grid, KelTextView label) {
    grid.Add(new wxStaticText(this, wxID_ANY, ToWx(label)), wxSizerFlags().CenterVertical());
}

wxTextCtrl* StartDialog::AddEdit(wxSizer& row, KelTextView label, const KelText& value) {
    auto* edit = new wxTextCtrl(this, wxID_ANY, ToWx(value));
    edit->SetName(NameOf(label));
    MakeTouchable(*edit);
    edit->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { ShowMissing(); });
    row.Add(edit, wxSizerFlags(1).CenterVertical());
    return edit;
}

wxTextCtrl* StartDialog::AddFolder(wxSizer& grid, KelTextView label, KelTextView browseLabel, const KelText& value) {
    AddLabel(grid, label);
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    auto* folder = AddEdit(*row, label, value);
    auto* browse = new wxButton(this, wxID_ANY, ToWx(browseLabel));
    MakeTouchable(*browse);
    browse->Bind(wxEVT_BUTTON, [this, folder](wxCommandEvent&) { Browse(*folder); });
    row->Add(browse, wxSizerFlags().CenterVertical().Border(wxLEFT, FromDIP(4)));
    grid.Add(row, wxSizerFlags().Expand());
    return folder;
}

wxSizer* StartDialog::MakeFields(const std::vector<KelText>& languages) {
    const int gap = FromDIP(4);
    auto* grid = new wxFlexGridSizer(2, gap, gap);
    grid->AddGrowableCol(1);
    const auto addChoice = [&](wxSizer& row, KelTextView label, wxSizerFlags flags) {
        auto* choice = new wxChoice(this, wxID_ANY);
        choice->SetName(NameOf(label));
        MakeTouchable(*choice);
        IgnoreWheel(*choice);
        ConfirmWithEnter(*choice, [this] { Create(); });
        row.Add(choice, flags.CenterVertical());
        return choice;
    };
    AddLabel(*grid, text::startWindow::machine);
    auto* name = new wxBoxSizer(wxHORIZONTAL);
    machine = AddEdit(*name, text::startWindow::machine, KelText(TarvinApp::defaultMachineName));
    grid->Add(name, wxSizerFlags().Expand());
    AddLabel(*grid, text::startWindow::port);
    auto* portRow = new wxBoxSizer(wxHORIZONTAL);
    ports = addChoice(*portRow, text::startWindow::port, wxSizerFlags(1));
    ports->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ShowMissing(); });
    lookAgain = new wxButton(this, wxID_ANY, ToWx(text::startWindow::lookAgain));
    MakeTouchable(*lookAgain);
    lookAgain->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Look(); });
    portRow->Add(lookAgain, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    grid->Add(portRow, wxSizerFlags().Expand());
    AddLabel(*grid, text::startWindow::speed);
    speed = addChoice(*grid, text::startWindow::speed, wxSizerFlags());
    for (const KelTextView choice : baudRateChoices)
        speed->Append(ToWx(choice));
    speed->SetStringSelection(ToWx(usualSpeed));
    const KelText folder = FromPath(installation / "NC Files");
    upload = AddFolder(*grid, text::startWindow::upload, text::startWindow::browseUpload, folder);
    download = AddFolder(*grid, text::startWindow::download, text::startWindow::browseDownload, folder);
    AddLabel(*grid, text::startWindow::language);
    language = addChoice(*grid, text::startWindow::language, wxSizerFlags());
    language->Append(ToWx(text::settingsPage::systemLanguage));
    for (const KelText& each : languages)
        language->Append(ToWx(each));
    language->SetSelection(0);
    return grid;
}

wxSizer* StartDialog::MakeButtons() {
    auto* buttons = new wxStdDialogButtonSizer;
    create = new wxButton(this, wxID_OK, ToWx(text::startWindow::create));
    create->SetDefault();
    auto* cancel = new wxButton(this, wxID_CANCEL, ToWx(text::dialog::cancel));
    for (wxButton* button : {create, cancel}) {
        MakeTouchable(*button);
        buttons->AddButton(button);
    }
    buttons->Realize();
    create->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Create(); });
    return buttons;
}

void StartDialog::Look() {
    lookAgain->Disable();
    looking.Start([pathsFile = installation /
                               "KEL.INI"](BackgroundWork<Reports>::Stop) { return InspectPorts(pathsFile, {}, {}); },
                  [this](Reports found) { OnLooked(std::move(found)); });
    ShowMissing();
}

void StartDialog::OnLooked(Reports found) {
    lookAgain->Enable();
    reports = std::move(found);
    ports->Clear();
    int free = wxNOT_FOUND;
    for (const PortReport& report : reports) {
        const int entry = ports->Append(ToWx(PortLine(report)));
        if (report.state == PortState::Free && free == wxNOT_FOUND)
            free = entry;
    }
    ports->SetSelection(free == wxNOT_FOUND && !reports.empty() ? 0 : free);
    ShowMissing();
}

const PortReport* StartDialog::ChosenPort() const {
    const int entry = ports->GetSelection();
    return entry == wxNOT_FOUND ? nullptr : &reports[static_cast<std::size_t>(entry)];
}

// The folders themselves are tried when the machine is made: a lost network drive must not stop the typing.
void StartDialog::ShowMissing() {
    // The first fields are filled before the others are there.
    if (missing == nullptr)
        return;
    message->Say({});
    KelText words;
    const auto add = [&](const KelText& line) { words += (words.empty() ? u"" : u"\n") + line; };
    if (looking.IsRunning())
        add(text::firstUse::looking);
    else if (reports.empty())
        add(text::firstUse::noPorts);
    if (const PortReport* const chosen = ChosenPort()) {
        for (const PortAdvice& each : chosen->advice) {
            add(each.text);
            if (!each.command.empty())
                add(u"    " + each.command);
        }
    }
    missing->ChangeValue(ToWx(words.empty() ? KelText(text::startWindow::nothingMissing) : words));
}

void StartDialog::Browse(wxTextCtrl& folder) {
    wxDirDialog dialog(this, ToWx(text::firstUse::browseCaption), folder.GetValue());
    if (dialog.ShowModal() == wxID_OK)
        folder.SetValue(dialog.GetPath());
}

MachineWish StartDialog::Wish() const {
    MachineWish wish;
    wish.name = MachineName();
    // The device gets its number in KEL.INI. A computer without a port may get one later.
    const PortReport* const chosen = ChosenPort();
    wish.port = chosen == nullptr ? KelText(u"COM1") : chosen->device.empty() ? chosen->name : chosen->device;
    wish.settings.push_back({u"baudrate", FromWx(speed->GetStringSelection())});
    for (const auto& [setting, field] : {std::pair(u"upload path", upload), std::pair(u"download path", download)}) {
        const KelText folder(Trimmed(FromWx(field->GetValue())));
        wish.settings.push_back({setting, folder});
        if (ToPath(folder).is_absolute())
            wish.folders.push_back(ToPath(folder));
    }
    if (language->GetSelection() > 0)
        wish.settings.push_back({u"language", FromWx(language->GetStringSelection())});
    return wish;
}

void StartDialog::Create() {
    if (MachineName().empty()) {
        Complain(*machine, text::startWindow::nameNeeded);
        return;
    }
    const MachineWish wish = Wish();
    const auto planned = PlannedInstallation(installation);
    if (!planned) {
        Complain(*create, planned.Reason().text);
        return;
    }
    if (const auto tried = TryMachine(*planned, wish); !tried) {
        Complain(*upload, tried.Reason().text);
        return;
    }
    const auto made = MakeInstallation(installation);
    if (!made) {
        Complain(*create, made.Reason().text);
        return;
    }
    const auto read = Installation::Read(installation);
    const auto done = read ? SetUpMachine(*read, wish) : read.Reason();
    if (!done) {
        Complain(*upload, done.Reason().text);
        return;
    }
    for (wxTextCtrl* const field : {upload, download}) {
        const FolderUse use = field == upload ? FolderUse::Write : FolderUse::Read;
        if (const auto problem = TryFolder(ToPath(FromWx(field->GetValue())), use)) {
            missing->ChangeValue(ToWx(problem->text + u"\n    " + problem->command));
            Complain(*field, problem->text);
            return;
        }
    }
    Finish(wxID_OK);
}

void StartDialog::Finish(int result) {
    // Either of the two ways to show the dialog may be in use.
    if (IsModal()) {
        EndModal(result);
    } else {
        SetReturnCode(result);
        Hide();
    }
}

void StartDialog::Complain(wxWindow& field, KelTextView reason) {
    message->Say(wxControl::EscapeMnemonics(ToWx(reason)));
    Fit();
    field.SetFocus();
}

}
