#include "ui/SettingsDialog.h"

#include "base/WindowMessages.h"
#include "settings/SettingsChoices.h"
#include "ui/HelpBook.h"
#include "ui/Pictures.h"

#include <algorithm>
#include <iterator>

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

wxStaticBoxSizer* MakeGroup(wxWindow* window, KelTextView label) {
    return new wxStaticBoxSizer(wxVERTICAL, window, ToWx(label));
}

void Fill(wxStaticBoxSizer* group, wxSizer* content) {
    group->Add(content, wxSizerFlags().Expand().Border(wxALL, group->GetStaticBox()->FromDIP(6)));
}

// Gives all lists of a group the width of the widest one.
void MakeAsWide(wxWindow* box, const wxChoice* widest) {
    const int width = widest->GetBestSize().GetWidth();
    for (wxWindow* control : box->GetChildren()) {
        if (auto* list = dynamic_cast<wxChoice*>(control))
            list->SetMinSize(wxSize(std::max(width, list->GetBestSize().GetWidth()), -1));
    }
}

// Without the folder of the by-id names, which is the same for all devices.
KelText ShortDevice(const KelText& device) {
    constexpr KelTextView byId = u"/dev/serial/by-id/";
    return device.starts_with(byId) ? device.substr(byId.size()) : device;
}

// The text of a character that has no name in the list.
KelText ByteText(std::uint8_t value) {
    constexpr KelTextView digits = u"0123456789ABCDEF";
    return {u'0', u'x', digits[value >> 4], digits[value & 15]};
}

}

SettingsDialog::SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner)
    : wxDialog(parent, wxID_ANY, ToWx(text::caption::downloadSettings), wxDefaultPosition, wxDefaultSize,
               wxDEFAULT_DIALOG_STYLE | wxRESIZE_BORDER, "Download Settings"),
      present(std::move(settings)),
      foundPorts(std::move(ports)),
      user(std::move(owner)) {
    SetIcons(ProgramIcons());
    const int gap = FromDIP(6);
    auto* left = new wxBoxSizer(wxVERTICAL);
    left->Add(AddLineGroup(), wxSizerFlags().Expand());
    left->Add(AddCharacterGroup(), wxSizerFlags().Expand().Border(wxTOP, gap));
    left->Add(AddCheckGroup(), wxSizerFlags().Expand().Border(wxTOP, gap));
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
    // After the window is shown: some systems move the focus to another field while they show it.
    Bind(wxEVT_SHOW, [this](wxShowEvent& event) {
        event.Skip();
        if (event.IsShown())
            CallAfter([this] { portList->SetFocus(); });
    });
}

wxStaticBoxSizer* SettingsDialog::AddLineGroup() {
    auto* group = MakeGroup(this, text::dialog::lineGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddPortList(box, *grid);
    AddChoice(box, *grid, text::dialog::baudRate, Texts(baudRateChoices), &DownloadSettings::baudRate);
    AddChoice(box, *grid, text::dialog::parity, Texts(parityChoices), &DownloadSettings::parity);
    AddChoice(box, *grid, text::dialog::dataBits, Texts(dataBitsChoices), &DownloadSettings::dataBits);
    wxChoice* const stopBits =
        AddChoice(box, *grid, text::dialog::stopBits, Texts(stopBitsChoices), &DownloadSettings::stopBits);
    wxChoice* const widest =
        AddChoice(box, *grid, text::dialog::flowControl, Texts(flowControlChoices), &DownloadSettings::flowControl);
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
    auto* label = new wxStaticText(box, wxID_ANY, ToWx(text::dialog::port));
    portList = new wxChoice(box, wxID_ANY);
    portList->SetName(wxControl::RemoveMnemonics(ToWx(text::dialog::port)));
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
    device->SetLabel(isKnown ? ToLabel(ShortDevice(port->device)) : ToWx(text::setting::noDeviceKnown));
    const wxString tip = isKnown ? ToWx(port->device) : wxString();
    device->SetToolTip(tip);
    portList->SetToolTip(tip);
}

wxChoice* SettingsDialog::AddChoice(wxWindow* box, wxFlexGridSizer& grid, KelTextView label,
                                    std::vector<KelText> entries, Text setting) {
    grid.Add(new wxStaticText(box, wxID_ANY, ToWx(label)), wxSizerFlags().CenterVertical());
    auto* list = new wxChoice(box, wxID_ANY);
    list->SetName(wxControl::RemoveMnemonics(ToWx(label)));
    grid.Add(list, wxSizerFlags().Left());
    const BoundChoice bound(list, std::move(entries), present.*setting);
    writers.push_back([bound, setting](DownloadSettings& settings) { settings.*setting = bound.Value(); });
    return list;
}

wxStaticBoxSizer* SettingsDialog::AddDelayGroup() {
    auto* group = MakeGroup(this, text::dialog::delayGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddSpin(box, *grid, text::dialog::characterDelay, longestCharacterDelayMilliseconds,
            &DownloadSettings::characterDelayMilliseconds);
    AddSpin(box, *grid, text::dialog::lineDelay, longestLineDelayMilliseconds,
            &DownloadSettings::lineDelayMilliseconds);
    AddSpin(box, *grid, text::dialog::transmitDelay, longestTransmitDelaySeconds,
            &DownloadSettings::transmitDelaySeconds);
    Fill(group, grid);
    return group;
}

wxStaticBoxSizer* SettingsDialog::AddCheckGroup() {
    auto* group = MakeGroup(this, text::dialog::checkGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    grid->Add(new wxStaticText(box, wxID_ANY, ToWx(text::dialog::incomingCheck)), wxSizerFlags().CenterVertical());
    auto* list = new wxChoice(box, wxID_ANY);
    list->SetName(wxControl::RemoveMnemonics(ToWx(text::dialog::incomingCheck)));
    list->SetToolTip(ToWx(text::tip::incomingCheck));
    for (const KelTextView entry : incomingCheckChoices)
        list->Append(ToWx(entry));
    const bool isKnown = present.incomingCheck >= 0 && present.incomingCheck < std::ssize(incomingCheckChoices);
    list->SetSelection(isKnown ? present.incomingCheck : incomingCheckEnd);
    grid->Add(list, wxSizerFlags().Right());
    writers.push_back([list](DownloadSettings& settings) { settings.incomingCheck = list->GetSelection(); });
    AddSpin(box, *grid, text::dialog::replacedFilesKept, mostReplacedFilesKept, &DownloadSettings::replacedFilesKept);
    Fill(group, grid);
    return group;
}

void SettingsDialog::AddSpin(wxWindow* box, wxFlexGridSizer& grid, KelTextView label, int highest, Number setting) {
    grid.Add(new wxStaticText(box, wxID_ANY, ToWx(label)), wxSizerFlags().CenterVertical());
    auto* spin = new wxSpinCtrl(box, wxID_ANY);
    spin->SetName(wxControl::RemoveMnemonics(ToWx(label)));
    spin->SetRange(0, highest);
    spin->SetIncrement(1);
    spin->SetValue(std::clamp<int>(present.*setting, 0, highest));
    spin->SetInitialSize(spin->GetSizeFromTextSize(spin->GetTextExtent("0000").GetWidth()));
    grid.Add(spin, wxSizerFlags().Right());
    writers.push_back([spin, setting](DownloadSettings& settings) { settings.*setting = spin->GetValue(); });
}

wxStaticBoxSizer* SettingsDialog::AddFilesGroup() {
    auto* group = MakeGroup(this, text::dialog::filesGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 3, 0);
    AddTextField(
        box, *grid,
        {&DownloadSettings::uploadPath, text::dialog::uploadPath, text::dialog::browseUploadPath, AsFolderSetting},
        &SettingsDialog::BrowseForFolder);
    AddTextField(box, *grid,
                 {&DownloadSettings::downloadPath, text::dialog::downloadPath, text::dialog::browseDownloadPath,
                  AsFolderSetting},
                 &SettingsDialog::BrowseForFolder);
    AddTextField(box, *grid, {&DownloadSettings::fileExtension, text::dialog::fileExtension, {}, AsExtensionSetting},
                 nullptr);
    Fill(group, grid);
    return group;
}

wxStaticBoxSizer* SettingsDialog::AddLogGroup() {
    auto* group = MakeGroup(this, text::dialog::logGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 3, 0);
    TextField& field =
        AddTextField(box, *grid, {&DownloadSettings::logFile, text::dialog::logFile, text::dialog::browseLogFile},
                     &SettingsDialog::BrowseForLogFile);
    Fill(group, grid);
    wxCheckBox* const writeLog = AddCheckBox(box, text::dialog::writeLog, &DownloadSettings::writeLog);
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
    // The handlers keep the place in the list: the field itself does not exist yet.
    const std::size_t place = fields.size();
    TextField::Handlers handlers;
    handlers.changed = [this, place] { FieldChanged(*fields[place]); };
    handlers.browse = [this, place, browse] { (this->*browse)(*fields[place]); };
    fields.push_back(std::make_unique<TextField>(box, grid, std::move(description), present, std::move(handlers)));
    TextField& field = *fields.back();
    writers.push_back([&field](DownloadSettings& settings) { settings.*field.Setting() = field.Value(); });
    return field;
}

wxCheckBox* SettingsDialog::AddCheckBox(wxWindow* box, KelTextView label, Number setting) {
    auto* checkBox = new wxCheckBox(box, wxID_ANY, ToWx(label));
    checkBox->SetName(wxControl::RemoveMnemonics(ToWx(label)));
    checkBox->SetValue(present.*setting != 0);
    writers.push_back([checkBox, setting](DownloadSettings& settings) {
        // Another stored number than 0 or 1 stays unless the user clicks the box.
        if (checkBox->IsChecked() != (settings.*setting != 0))
            settings.*setting = checkBox->IsChecked() ? 1 : 0;
    });
    return checkBox;
}

wxStaticBoxSizer* SettingsDialog::AddCharacterGroup() {
    auto* group = MakeGroup(this, text::dialog::characterGroup);
    wxWindow* const box = group->GetStaticBox();
    auto* grid = MakeGrid(this, 2, 6);
    AddCharacter(box, *grid, text::dialog::sendStartCode, text::dialog::startCharacter,
                 &DownloadSettings::sendStartCode, &DownloadSettings::startCharacter);
    AddCharacter(box, *grid, text::dialog::sendEndCode, text::dialog::endCharacter, &DownloadSettings::sendEndCode,
                 &DownloadSettings::endCharacter);
    Fill(group, grid);
    return group;
}

void SettingsDialog::AddCharacter(wxWindow* box, wxFlexGridSizer& grid, KelTextView label, KelTextView listName,
                                  Number isSent, Byte setting) {
    wxCheckBox* const checkBox = AddCheckBox(box, label, isSent);
    auto* list = new wxChoice(box, wxID_ANY);
    list->SetName(ToWx(listName));
    list->SetToolTip(ToWx(listName));
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
        // An entry after those of the table stands for the present value.
        if (selected < controlCharacters.size())
            settings.*setting = controlCharacters[selected].value;
    });
    const auto follow = [list, checkBox] { list->Enable(checkBox->IsChecked()); };
    checkBox->Bind(wxEVT_CHECKBOX, [follow](wxCommandEvent&) { follow(); });
    follow();
}

wxSizer* SettingsDialog::AddButtons() {
    auto* buttons = new wxStdDialogButtonSizer;
    auto* confirm = new wxButton(this, wxID_OK, ToWx(text::dialog::ok));
    confirm->SetDefault();
    buttons->AddButton(confirm);
    buttons->AddButton(new wxButton(this, wxID_CANCEL, ToWx(text::dialog::cancel)));
    buttons->AddButton(new wxButton(this, wxID_HELP, ToWx(text::dialog::help)));
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
    const KelTextView title = isUpload ? text::caption::uploadPath : text::caption::downloadPath;
    wxDirDialog dialog(this, ToWx(title), ToWx(present.*field.Setting()));
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, AsFolderSetting(FromWx(dialog.GetPath())));
}

void SettingsDialog::BrowseForLogFile(TextField& field) {
    const std::filesystem::path current = ToPath(present.logFile);
    // Without wxFD_OVERWRITE_PROMPT: the log appends to an existing file.
    wxFileDialog dialog(this, ToWx(text::caption::saveLogFile), ToWx(FromPath(current.parent_path())),
                        ToWx(FromPath(current.filename())), ToWx(text::dialog::activityLogFilters), wxFD_SAVE);
    if (user.runNative(dialog) == wxID_OK)
        TakeBrowsed(field, FromWx(dialog.GetPath()));
}

void SettingsDialog::TakeBrowsed(TextField& field, const KelText& text) {
    if (text.empty())
        return;
    // Takes effect even if the user cancels the dialog, so it goes into the given settings too.
    present.*field.Setting() = text;
    field.Show(text);
    FieldChanged(field);
    user.writeThrough(present);
}

void SettingsDialog::FieldChanged(TextField& field) {
    // A changed field is checked anew, as if the user had not seen its message.
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
    // A problem that may stay is told once; with OK pressed again it is accepted.
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
        field->Say(ToWx(problem->mayStay ? Filled(text::setting::mayStay, {problem->message}) : problem->message));
        if (problem->mayStay)
            told.push_back(problem->field);
        if (first == nullptr)
            first = field.get();
    }
    FitHeight();
    first->Focus();
}

// Makes the dialog as high as its content, and leaves its width to the user.
void SettingsDialog::FitHeight() {
    const wxSize fitting = GetSizer()->CalcMin();
    SetMinClientSize(fitting);
    SetClientSize(std::max(GetClientSize().GetWidth(), fitting.GetWidth()), fitting.GetHeight());
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
