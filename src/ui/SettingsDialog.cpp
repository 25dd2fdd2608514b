#include "ui/SettingsDialog.h"

#include "settings/SettingsChoices.h"
#include "ui/HelpKey.h"
#include "ui/Pictures.h"
#include "ui/UiText.h"

#include <algorithm>

#include <wx/dirdlg.h>
#include <wx/filedlg.h>
#include <wx/spinctrl.h>
#include <wx/statbox.h>

namespace tarvin {

namespace {

constexpr int deviceWidth = 80; // in dialog units

template <std::size_t count>
std::vector<KelText> Texts(const std::array<KelTextView, count>& choices) {
    return {choices.begin(), choices.end()};
}

wxFlexGridSizer* MakeGrid(wxWindow* window, int columnCount, int verticalGap) {
    auto* grid = new wxFlexGridSizer(columnCount, window->FromDIP(verticalGap), window->FromDIP(8));
    grid->AddGrowableCol(1);
    return grid;
}

wxStaticBoxSizer* MakeGroup(wxWindow* window, const wxString& label) {
    return new wxStaticBoxSizer(wxVERTICAL, window, label);
}

void Fill(wxStaticBoxSizer* group, wxSizer* content) {
    group->Add(content, wxSizerFlags().Expand().Border(wxALL, group->GetStaticBox()->FromDIP(6)));
}

// Lists of one group look calmer with one width; the lists of the others hold shorter texts.
void MakeAsWide(wxWindow* box, const wxChoice* widest) {
    const int width = widest->GetBestSize().GetWidth();
    for (wxWindow* control : box->GetChildren()) {
        if (auto* list = dynamic_cast<wxChoice*>(control))
            list->SetMinSize(wxSize(std::max(width, list->GetBestSize().GetWidth()), -1));
    }
}

// By its own name where the folder says no more than that it is a serial device.
KelText ShortDevice(const KelText& device) {
    constexpr KelTextView byId = u"/dev/serial/by-id/";
    return device.starts_with(byId) ? device.substr(byId.size()) : device;
}

// The value of an entry that none of the names carries.
KelText ByteText(std::uint8_t value) {
    constexpr KelTextView digits = u"0123456789ABCDEF";
    return {u'0', u'x', digits[value >> 4], digits[value & 15]};
}

}

SettingsDialog::SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner)
    : wxDialog(parent, wxID_ANY, "Download Settings", wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "Download Settings"),
      present(std::move(settings)),
      foundPorts(std::move(ports)),
      user(std::move(owner)) {
    SetIcons(ProgramIcons());
    const int gap = FromDIP(6);
    auto* left = new wxBoxSizer(wxVERTICAL);
    left->Add(AddLineGroup(), wxSizerFlags().Expand());
    left->Add(AddCharacterGroup(), wxSizerFlags().Expand().Border(wxTOP, gap));
    auto* right = new wxBoxSizer(wxVERTICAL);
    right->Add(AddFilesGroup(), wxSizerFlags().Expand());
    right->Add(AddLogGroup(), wxSizerFlags().Expand().Border(wxTOP, gap));
    right->Add(AddDelayGroup(), wxSizerFlags().Expand().Border(wxTOP, gap));
    auto* columns = new wxBoxSizer(wxHORIZONTAL);
    columns->Add(left, wxSizerFlags().Expand().Border(wxRIGHT, gap));
    columns->Add(right, wxSizerFlags(1).Expand());
    auto* all = new wxBoxSizer(wxVERTICAL);
    all->Add(columns, wxSizerFlags(1).Expand().Border(wxALL, 2 * gap));
    all->Add(AddButtons(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, 2 * gap));
    SetSizer(all);
    ShowDevice();
    FitHeight();
    CentreOnParent();
    // Once the window is there: some systems give the focus to a field of their own choice while they show it.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        event.Skip();
        if (event.IsShown())
            CallAfter([this] { portList->SetFocus(); });
    });
}

wxStaticBoxSizer* SettingsDialog::AddLineGroup() {
    auto* group = MakeGroup(this, "Settings");
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddPortList(box, *grid);
    AddChoice(box, *grid, "&Baud Rate", Texts(baudRateChoices), &DownloadSettings::baudRate);
    AddChoice(box, *grid, "P&arity", Texts(parityChoices), &DownloadSettings::parity);
    AddChoice(box, *grid, "&Data Bits", Texts(dataBitsChoices), &DownloadSettings::dataBits);
    wxChoice* const stopBits = AddChoice(box, *grid, "&Stop Bits", Texts(stopBitsChoices), &DownloadSettings::stopBits);
    wxChoice* const widest =
        AddChoice(box, *grid, "&Flow Control", Texts(flowControlChoices), &DownloadSettings::flowControl);
    MakeAsWide(box, widest);
    Fill(group, grid);
    stopBitsNote = std::make_unique<FieldMessage>(box, FieldMessage::Kind::Note);
    group->Add(stopBitsNote->Sizer(), wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(6)));
    const auto tell = [this] { return stopBitsNote->Say(ToWx(StopBitsNote(Settings().stopBits))); };
    stopBits->Bind(wxEVT_CHOICE, [this, tell](wxCommandEvent&) {
        if (tell())
            FitHeight();
    });
    tell();
    return group;
}

void SettingsDialog::AddPortList(wxWindow* box, wxFlexGridSizer& grid) {
    std::vector<KelText> names;
    for (const FoundPort& port : foundPorts)
        names.push_back(port.name);
    auto* label = new wxStaticText(box, wxID_ANY, "&Port");
    portList = new wxChoice(box, wxID_ANY);
    portList->SetName("Port");
    device = new wxStaticText(box, wxID_ANY, wxString(), wxDefaultPosition, wxDefaultSize,
                              wxST_ELLIPSIZE_MIDDLE | wxST_NO_AUTORESIZE);
    device->SetMinSize(wxSize(ConvertDialogToPixels(wxSize(deviceWidth, 0)).GetWidth(), -1));
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    row->Add(portList);
    row->Add(device, wxSizerFlags(1).CenterVertical().Border(wxLEFT, FromDIP(8)));
    grid.Add(label, wxSizerFlags().CenterVertical());
    grid.Add(row, wxSizerFlags().Expand());
    const BoundChoice bound(portList, std::move(names), present.port);
    writers.push_back([bound](DownloadSettings& settings) { settings.port = bound.Value(); });
    portList->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { ShowDevice(); });
}

void SettingsDialog::ShowDevice() {
    const KelText name = Settings().port;
    const auto port =
        std::find_if(foundPorts.begin(), foundPorts.end(), [&](const FoundPort& found) { return found.name == name; });
    const bool isKnown = port != foundPorts.end() && !port->device.empty();
    device->SetLabel(isKnown ? ToLabel(ShortDevice(port->device)) : wxString("no device known"));
    const wxString tip = isKnown ? ToWx(port->device) : wxString();
    device->SetToolTip(tip);
    portList->SetToolTip(tip);
}

wxChoice* SettingsDialog::AddChoice(wxWindow* box, wxFlexGridSizer& grid, const wxString& label,
                                    std::vector<KelText> entries, Text setting) {
    grid.Add(new wxStaticText(box, wxID_ANY, label), wxSizerFlags().CenterVertical());
    auto* list = new wxChoice(box, wxID_ANY);
    list->SetName(wxControl::RemoveMnemonics(label));
    grid.Add(list, wxSizerFlags().Left());
    const BoundChoice bound(list, std::move(entries), present.*setting);
    writers.push_back([bound, setting](DownloadSettings& settings) { settings.*setting = bound.Value(); });
    return list;
}

wxStaticBoxSizer* SettingsDialog::AddDelayGroup() {
    auto* group = MakeGroup(this, "Delays");
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddSpin(box, *grid, "Character Dela&y (milliseconds)", longestCharacterDelayMilliseconds,
            &DownloadSettings::characterDelayMilliseconds);
    AddSpin(box, *grid, "Li&ne Delay (milliseconds)", longestLineDelayMilliseconds,
            &DownloadSettings::lineDelayMilliseconds);
    AddSpin(box, *grid, "&Transmit Delay (Seconds)", longestTransmitDelaySeconds,
            &DownloadSettings::transmitDelaySeconds);
    Fill(group, grid);
    return group;
}

void SettingsDialog::AddSpin(wxWindow* box, wxFlexGridSizer& grid, const wxString& label, int highest, Number setting) {
    grid.Add(new wxStaticText(box, wxID_ANY, label), wxSizerFlags().CenterVertical());
    auto* spin = new wxSpinCtrl(box, wxID_ANY);
    spin->SetName(wxControl::RemoveMnemonics(label));
    spin->SetRange(0, highest);
    spin->SetIncrement(1);
    spin->SetValue(std::clamp<int>(present.*setting, 0, highest));
    spin->SetInitialSize(spin->GetSizeFromTextSize(spin->GetTextExtent("0000").GetWidth()));
    grid.Add(spin, wxSizerFlags().Right());
    writers.push_back([spin, setting](DownloadSettings& settings) { settings.*setting = spin->GetValue(); });
}

wxStaticBoxSizer* SettingsDialog::AddFilesGroup() {
    auto* group = MakeGroup(this, "Files");
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 3, 0);
    AddTextField(box, *grid,
                 {&DownloadSettings::uploadPath, "&Upload Path", "Browse for the upload folder", AsFolderSetting},
                 &SettingsDialog::BrowseForFolder);
    AddTextField(box, *grid,
                 {&DownloadSettings::downloadPath, "Do&wnload Path", "Browse for the download folder", AsFolderSetting},
                 &SettingsDialog::BrowseForFolder);
    AddTextField(box, *grid, {&DownloadSettings::fileExtension, "File &Extension", {}, AsExtensionSetting}, nullptr);
    Fill(group, grid);
    return group;
}

wxStaticBoxSizer* SettingsDialog::AddLogGroup() {
    auto* group = MakeGroup(this, "Activity Log");
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 3, 0);
    TextField& field = AddTextField(box, *grid, {&DownloadSettings::logFile, "&Log File", "Browse for the log file"},
                                    &SettingsDialog::BrowseForLogFile);
    Fill(group, grid);
    wxCheckBox* const writeLog = AddCheckBox(box, "W&rite Log File", &DownloadSettings::writeLog);
    group->Add(writeLog, wxSizerFlags().Border(wxLEFT | wxRIGHT | wxBOTTOM, FromDIP(6)));
    const auto follow = [&field, writeLog] { field.Enable(writeLog->IsChecked()); };
    writeLog->Bind(wxEVT_CHECKBOX, [this, &field, follow](wxCommandEvent&) {
        follow();
        FieldChanged(field);
    });
    follow();
    return group;
}

TextField& SettingsDialog::AddTextField(wxWindow* box, wxFlexGridSizer& grid, TextField::Description description,
                                        void (SettingsDialog::*browse)(TextField&)) {
    const std::size_t place = fields.size();
    TextField::Handlers handlers;
    handlers.changed = [this, place] { FieldChanged(*fields[place]); };
    handlers.browse = [this, place, browse] { (this->*browse)(*fields[place]); };
    fields.push_back(std::make_unique<TextField>(box, grid, std::move(description), present, std::move(handlers)));
    TextField& field = *fields.back();
    writers.push_back([&field](DownloadSettings& settings) { settings.*field.Setting() = field.Value(); });
    return field;
}

wxCheckBox* SettingsDialog::AddCheckBox(wxWindow* box, const wxString& label, Number setting) {
    auto* checkBox = new wxCheckBox(box, wxID_ANY, label);
    checkBox->SetName(wxControl::RemoveMnemonics(label));
    checkBox->SetValue(present.*setting != 0);
    writers.push_back([checkBox, setting](DownloadSettings& settings) {
        if (checkBox->IsChecked() != (settings.*setting != 0))
            settings.*setting = checkBox->IsChecked() ? 1 : 0;
    });
    return checkBox;
}

wxStaticBoxSizer* SettingsDialog::AddCharacterGroup() {
    auto* group = MakeGroup(this, "Control Characters");
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddCharacter(box, *grid, "Send Code to Start Trans&mission", "Character sent at the start of a transmission",
                 &DownloadSettings::sendStartCode, &DownloadSettings::startCharacter);
    AddCharacter(box, *grid, "Send Code to End Transm&ission", "Character sent at the end of a transmission",
                 &DownloadSettings::sendEndCode, &DownloadSettings::endCharacter);
    Fill(group, grid);
    return group;
}

void SettingsDialog::AddCharacter(wxWindow* box, wxFlexGridSizer& grid, const wxString& label, const wxString& listName,
                                  Number isSent, Byte setting) {
    wxCheckBox* const checkBox = AddCheckBox(box, label, isSent);
    auto* list = new wxChoice(box, wxID_ANY);
    list->SetName(listName);
    list->SetToolTip(listName);
    for (const ControlCharacter& character : controlCharacters)
        list->Append(ToWx(character.name));
    const auto entry = ControlCharacterEntry(present.*setting);
    if (!entry)
        list->Append(ToWx(ByteText(present.*setting)));
    list->SetSelection(static_cast<int>(entry.value_or(controlCharacters.size())));
    grid.Add(checkBox, wxSizerFlags().CenterVertical());
    grid.Add(list, wxSizerFlags().Right());
    writers.push_back([list, setting](DownloadSettings& settings) {
        const auto selected = static_cast<std::size_t>(list->GetSelection());
        // The entry behind those of the table stands for what the setting is.
        if (selected < controlCharacters.size())
            settings.*setting = controlCharacters[selected].value;
    });
    const auto follow = [list, checkBox] { list->Enable(checkBox->IsChecked()); };
    checkBox->Bind(wxEVT_CHECKBOX, [follow](wxCommandEvent&) { follow(); });
    follow();
}

wxSizer* SettingsDialog::AddButtons() {
    auto* buttons = new wxStdDialogButtonSizer;
    auto* confirm = new wxButton(this, wxID_OK, "OK");
    confirm->SetDefault();
    buttons->AddButton(confirm);
    buttons->AddButton(new wxButton(this, wxID_CANCEL, "Cancel"));
    buttons->AddButton(new wxButton(this, wxID_HELP, "&Help"));
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

DownloadSettings SettingsDialog::Settings() const {
    DownloadSettings settings = present;
    for (const auto& write : writers)
        write(settings);
    return settings;
}

void SettingsDialog::BrowseForFolder(TextField& field) {
    const bool isUpload = field.Setting() == &DownloadSettings::uploadPath;
    wxDirDialog dialog(this, isUpload ? "Upload Path" : "Download Path", ToWx(present.*field.Setting()));
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, AsFolderSetting(FromWx(dialog.GetPath())));
}

void SettingsDialog::BrowseForLogFile(TextField& field) {
    const std::filesystem::path current = ToPath(present.logFile);
    // The log is appended to: a file that is there already is no reason to ask.
    wxFileDialog dialog(this, "Save Log File As", ToWx(FromPath(current.parent_path())),
                        ToWx(FromPath(current.filename())), "Text files (*.txt|*.txt|All Files (*.*)|*.*", wxFD_SAVE);
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, FromWx(dialog.GetPath()));
}

void SettingsDialog::TakeBrowsed(TextField& field, const KelText& text) {
    if (text.empty())
        return;
    present.*field.Setting() = text;
    field.Show(text);
    FieldChanged(field);
    user.writeThrough(present);
}

void SettingsDialog::FieldChanged(TextField& field) {
    std::erase(told, field.Setting());
    if (field.Say({}))
        FitHeight();
}

void SettingsDialog::Confirm() {
    const std::vector<SettingsProblem> problems = CheckSettings(Settings(), present);
    const auto mustBeTold = [this](const SettingsProblem& problem) {
        return !problem.mayStay || std::find(told.begin(), told.end(), problem.field) == told.end();
    };
    if (std::none_of(problems.begin(), problems.end(), mustBeTold))
        return Finish(wxID_OK);
    told.clear();
    TextField* first = nullptr;
    for (const auto& field : fields) {
        field->ShowValue();
        const auto problem = std::find_if(problems.begin(), problems.end(),
                                          [&](const SettingsProblem& each) { return each.field == field->Setting(); });
        if (problem == problems.end()) {
            field->Say({});
            continue;
        }
        field->Say(ToWx(problem->message + (problem->mayStay ? u" Press OK once more to keep it." : u"")));
        if (problem->mayStay)
            told.push_back(problem->field);
        if (first == nullptr)
            first = field.get();
    }
    FitHeight();
    first->Focus();
}

// As high as its content, which has no use for more; as wide as the user likes.
void SettingsDialog::FitHeight() {
    const wxSize fitting = GetSizer()->CalcMin();
    SetMinClientSize(fitting);
    SetClientSize(std::max(GetClientSize().GetWidth(), fitting.GetWidth()), fitting.GetHeight());
    Layout();
}

void SettingsDialog::Finish(int result) {
    if (IsModal()) {
        EndModal(result);
    } else {
        SetReturnCode(result);
        Hide();
    }
}

}
