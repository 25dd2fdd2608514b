#include "ui/FirstUsePage.h"

#include "base/FirstUseMessages.h"
#include "settings/SettingsCheck.h"
#include "settings/SettingsChoices.h"
#include "transfer/NcFilePath.h"
#include "ui/CalmControls.h"
#include "ui/TouchTarget.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <wx/settings.h>

namespace tarvin {

namespace {

constexpr int resultMilliseconds = 2'000; // the engine tries once a second
constexpr KelTextView exampleNumber = u"4711";

// "COM1: free, FTDI FT232R, A10KXYZ". The state comes first: the end of a long line is out of sight. Windows puts the
// name of the port into that of the product.
KelText PortLine(const PortReport& report) {
    KelText line = report.name + u": " + DescribeState(report);
    const bool hasMaker = !report.maker.empty() && report.product.find(report.maker) == KelText::npos;
    const KelText product = (hasMaker ? report.maker + u" " : KelText()) + report.product;
    for (const KelText& part : {product, report.serialNumber}) {
        if (!part.empty())
            line += u", " + part;
    }
    if (product.empty() && report.serialNumber.empty() && !report.device.empty() && report.device != report.name)
        line += u", " + report.device;
    return line;
}

}

bool IsFirstUse(const EngineSnapshot& snapshot) {
    return !snapshot.hasLink && !snapshot.hasHadLink && snapshot.recent->empty();
}

FirstUsePage::FirstUsePage(wxWindow* parent)
    : wxScrolledWindow(parent, wxID_ANY, wxDefaultPosition, wxDefaultSize, wxVSCROLL | wxTAB_TRAVERSAL, "first use") {
    // Made hidden: the owner is not there yet.
    wxScrolledWindow::Show(false);
    SetLabel(ToWx(text::firstUse::name));
    SetScrollRate(0, FromDIP(8));
    const int gap = FromDIP(4);
    auto* column = new wxBoxSizer(wxVERTICAL);
    const auto line = wxSizerFlags().Expand().Border(wxLEFT | wxRIGHT | wxTOP, gap);
    auto* heading = new wxStaticText(this, wxID_ANY, ToWx(text::firstUse::heading));
    heading->SetFont(GetFont().Bold());
    column->Add(heading, line);
    column->Add(PortRow(), wxSizerFlags(1).Expand().Border(wxLEFT | wxRIGHT | wxTOP, gap));
    advice = AddText();
    column->Add(advice, line);
    // A field, so that the command can be selected and copied.
    command = new wxTextCtrl(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, wxTE_READONLY);
    command->SetName(ToWx(text::firstUse::command));
    command->Hide();
    column->Add(command, line);
    column->Add(ValueGrid(), line);
    example = AddText();
    column->Add(example, line);
    auto* foot = new wxBoxSizer(wxHORIZONTAL);
    message = std::make_unique<FieldMessage>(this, FieldMessage::Kind::Problem, FieldMessage::Room{0, 100});
    foot->Add(message->Sizer(), wxSizerFlags(1).CenterVertical());
    foot->AddStretchSpacer();
    useAndTest = AddButton(text::firstUse::useAndTest);
    useAndTest->SetToolTip(ToWx(text::firstUse::useAndTestTip));
    foot->Add(useAndTest, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    column->Add(foot, wxSizerFlags().Expand().Border(wxALL, gap));
    SetSizer(column);
    useAndTest->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { UseAndTest(); });
    resultTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { Look(); });
    // Texts are wrapped to the width of the page.
    Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
        event.Skip();
        // A scroll bar that comes or goes changes no wrapping: each could bring the other about without end.
        if (IsShown() && std::exchange(wrappedWidth, GetSize().GetWidth()) != GetSize().GetWidth())
            CallAfter([this] { ShowAdvice(); });
    });
}

wxButton* FirstUsePage::AddButton(KelTextView label) {
    auto* button = new wxButton(this, wxID_ANY, ToWx(label));
    MakeTouchable(*button);
    return button;
}

wxTextCtrl* FirstUsePage::AddEdit(KelTextView name) {
    auto* edit = new wxTextCtrl(this, wxID_ANY);
    edit->SetName(ToWx(name));
    edit->SetMinSize(wxSize(FromDIP(40), -1));
    MakeTouchable(*edit);
    edit->Bind(wxEVT_TEXT, [this](wxCommandEvent&) { OnEdited(); });
    return edit;
}

wxStaticText* FirstUsePage::AddText() {
    // The name by which the notes of the settings dialog are found too.
    return new wxStaticText(this, wxID_ANY, "", wxDefaultPosition, wxDefaultSize, 0, "message");
}

wxSizer* FirstUsePage::PortRow() {
    auto* row = new wxBoxSizer(wxHORIZONTAL);
    ports = new wxListBox(this, wxID_ANY, wxDefaultPosition, wxDefaultSize, 0, nullptr, wxLB_SINGLE | wxLB_HSCROLL);
    ports->SetName(ToWx(text::firstUse::ports));
    ports->SetMinSize(FromDIP(wxSize(100, 56)));
    ports->Bind(wxEVT_LISTBOX, [this](wxCommandEvent&) {
        if (const PortReport* chosen = Chosen())
            chosenName = chosen->name;
        OnEdited();
        ShowAdvice();
    });
    row->Add(ports, wxSizerFlags(1).Expand());
    lookAgain = AddButton(text::firstUse::lookAgain);
    lookAgain->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Look(); });
    row->Add(lookAgain, wxSizerFlags().Top().Border(wxLEFT, FromDIP(4)));
    return row;
}

wxSizer* FirstUsePage::ValueGrid() {
    const int gap = FromDIP(4);
    const auto label = [this](KelTextView words) { return new wxStaticText(this, wxID_ANY, ToWx(words)); };
    auto* grid = new wxFlexGridSizer(2, gap, gap);
    grid->AddGrowableCol(1);
    grid->Add(label(text::firstUse::speed), wxSizerFlags().CenterVertical());
    auto* values = new wxBoxSizer(wxHORIZONTAL);
    speed = new wxChoice(this, wxID_ANY);
    speed->SetName(ToWx(text::firstUse::speed));
    MakeTouchable(*speed);
    for (const KelTextView choice : baudRateChoices)
        speed->Append(ToWx(choice));
    IgnoreWheel(*speed);
    ConfirmWithEnter(*speed, [this] { UseAndTest(); });
    speed->Bind(wxEVT_CHOICE, [this](wxCommandEvent&) { OnEdited(); });
    values->Add(speed, wxSizerFlags().CenterVertical());
    values->Add(label(text::firstUse::extension), wxSizerFlags().CenterVertical().Border(wxLEFT | wxRIGHT, gap));
    extension = AddEdit(text::firstUse::extension);
    values->Add(extension, wxSizerFlags(1).CenterVertical());
    grid->Add(values, wxSizerFlags().Expand());
    grid->Add(label(text::firstUse::folder), wxSizerFlags().CenterVertical());
    auto* place = new wxBoxSizer(wxHORIZONTAL);
    folder = AddEdit(text::firstUse::folder);
    place->Add(folder, wxSizerFlags(1).CenterVertical());
    auto* browse = AddButton(text::firstUse::browse);
    browse->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { Browse(); });
    place->Add(browse, wxSizerFlags().CenterVertical().Border(wxLEFT, gap));
    grid->Add(place, wxSizerFlags().Expand());
    return grid;
}

bool FirstUsePage::Show(bool isShown) {
    const bool hasChanged = isShown != IsShown();
    if (!hasChanged)
        return false;
    auto* window = dynamic_cast<wxTopLevelWindow*>(wxGetTopLevelParent(this));
    if (isShown) {
        Fill();
        previousDefault = window->SetDefaultItem(useAndTest);
        Look();
    } else {
        resultTimer.Stop();
        openingPort.clear();
        window->SetDefaultItem(previousDefault);
    }
    return wxScrolledWindow::Show(isShown);
}

void FirstUsePage::ShowSnapshot(const EngineSnapshot& snapshot) {
    if (std::exchange(isConversation, snapshot.isConversation) != snapshot.isConversation && IsShown())
        ShowExample();
}

void FirstUsePage::ShowSettings(const DownloadSettings& settings) {
    // A hidden page is filled when it shows.
    if (!IsShown())
        return;
    const DownloadSettings before = std::exchange(given, settings);
    if (given.baudRate != before.baudRate)
        ShowSpeed(given.baudRate);
    if (given.fileExtension != before.fileExtension)
        extension->ChangeValue(ToWx(given.fileExtension));
    if (given.downloadPath != before.downloadPath)
        folder->ChangeValue(ToWx(given.downloadPath));
    if (given.port != before.port) {
        chosenName = given.port;
        Look();
    }
    ShowExample();
}

void FirstUsePage::ShowSpeed(const KelText& baudRate) {
    if (!speed->SetStringSelection(ToWx(baudRate)))
        speed->SetSelection(speed->Append(ToWx(baudRate)));
}

void FirstUsePage::EnableInput(bool isEnabled) {
    useAndTest->Enable(isEnabled);
}

void FirstUsePage::Fill() {
    given = owner.settings();
    chosenName = given.port;
    ShowSpeed(given.baudRate);
    // ChangeValue sends no event: these are no entries of the user.
    extension->ChangeValue(ToWx(given.fileExtension));
    folder->ChangeValue(ToWx(given.downloadPath));
    isProblemTold = false;
    message->Say({});
    ShowExample();
}

void FirstUsePage::Look() {
    lookAgain->Disable();
    if (reports.empty())
        SetText(*advice, ToWx(text::firstUse::looking));
    // The page shows while there is no link, so no port is the engine's own.
    looking.Start([pathsFile = owner.pathsFile, current = given.port](
                      BackgroundWork<Reports>::Stop) { return InspectPorts(pathsFile, current, {}); },
                  [this](Reports found) { OnLooked(std::move(found)); });
}

void FirstUsePage::OnLooked(Reports found) {
    lookAgain->Enable();
    reports = std::move(found);
    ports->Clear();
    int chosen = reports.empty() ? wxNOT_FOUND : 0;
    // A setting that leads nowhere is no choice of the user as long as another port is free.
    const bool isUsable = std::any_of(reports.begin(), reports.end(), [&](const PortReport& report) {
        return report.name == chosenName && report.state != PortState::NotThere;
    });
    for (const PortReport& report : reports) {
        const int entry = ports->Append(ToWx(PortLine(report)));
        const bool isWanted = isUsable ? report.name == chosenName : report.state == PortState::Free;
        if (isWanted && (chosen <= 0 || isUsable))
            chosen = entry;
    }
    ports->SetSelection(chosen);
    if (const PortReport* report = Chosen(); report != nullptr && openingPort.empty())
        chosenName = report->name;
    ShowAdvice();
    if (!openingPort.empty())
        SayResult();
}

// Tells after an attempt why there is still no link. The report says it where it can.
void FirstUsePage::SayResult() {
    message->Say(ToWx(Filled(text::firstUse::stillClosed, {openingPort})), FieldMessage::Kind::Problem);
    LayOut();
}

const PortReport* FirstUsePage::Chosen() const {
    const int entry = ports->GetSelection();
    return entry == wxNOT_FOUND ? nullptr : &reports[static_cast<std::size_t>(entry)];
}

void FirstUsePage::ShowAdvice() {
    KelText words;
    KelText line;
    if (const PortReport* chosen = Chosen()) {
        for (const PortAdvice& each : chosen->advice) {
            words += (words.empty() ? u"" : u"\n") + each.text;
            // The commands run one after the other.
            if (!each.command.empty())
                line += (line.empty() ? u"" : u"; ") + each.command;
        }
    } else {
        words = looking.IsRunning() ? text::firstUse::looking : text::firstUse::noPorts;
    }
    command->ChangeValue(ToWx(line));
    command->Show(!line.empty());
    SetText(*advice, ToWx(words));
    ShowExample();
}

void FirstUsePage::ShowExample() {
    const DownloadSettings wanted = Wanted();
    const KelText path = NcFilePath(wanted.downloadPath, exampleNumber, wanted.fileExtension);
    const KelTextView words = isConversation ? text::firstUse::example : text::firstUse::exampleByHand;
    SetText(*example, ToWx(Filled(words, {exampleNumber, isConversation ? path : wanted.downloadPath})));
    LayOut();
}

void FirstUsePage::SetText(wxStaticText& control, const wxString& words) {
    control.Show(!words.empty());
    control.SetLabel(wxControl::EscapeMnemonics(words));
    const int bar = std::max(wxSystemSettings::GetMetric(wxSYS_VSCROLL_X, this), 0);
    control.Wrap(std::max(GetSize().GetWidth() - bar - 2 * FromDIP(4), FromDIP(100)));
}

void FirstUsePage::LayOut() {
    FitInside();
    Layout();
}

void FirstUsePage::OnEdited() {
    isProblemTold = false;
    resultTimer.Stop();
    openingPort.clear();
    message->Say({});
    ShowExample();
}

void FirstUsePage::Browse() {
    wxDirDialog dialog(this, ToWx(text::firstUse::browseCaption), folder->GetValue());
    if (owner.runNative(dialog) == wxID_OK)
        folder->SetValue(ToWx(AsFolderSetting(FromWx(dialog.GetPath()))));
}

DownloadSettings FirstUsePage::Wanted() const {
    // Another dialog may have changed the rest meanwhile.
    DownloadSettings wanted = owner.settings();
    wanted.port = chosenName;
    wanted.baudRate = FromWx(speed->GetStringSelection());
    // What the user leaves alone stays as it was, to the code unit. Both folders follow the one of the page.
    if (folder->GetValue() != ToWx(given.downloadPath)) {
        wanted.downloadPath = AsFolderSetting(FromWx(folder->GetValue()));
        wanted.uploadPath = wanted.downloadPath;
    }
    if (extension->GetValue() != ToWx(given.fileExtension))
        wanted.fileExtension = AsExtensionSetting(FromWx(extension->GetValue()));
    return wanted;
}

void FirstUsePage::UseAndTest() {
    if (!useAndTest->IsEnabled())
        return;
    const auto complain = [this](const KelText& words, wxWindow& control) {
        message->Say(ToWx(words), FieldMessage::Kind::Problem);
        LayOut();
        control.SetFocus();
    };
    if (Chosen() == nullptr) {
        complain(text::firstUse::choosePort, *ports);
        return;
    }
    const DownloadSettings wanted = Wanted();
    const std::vector<SettingsProblem> problems = CheckSettings(wanted, given);
    const auto problem = std::find_if(problems.begin(), problems.end(), [this](const SettingsProblem& each) {
        const AnySetting shown[] = {&DownloadSettings::downloadPath, &DownloadSettings::uploadPath,
                                    &DownloadSettings::fileExtension};
        const bool isOfPage = std::find(std::begin(shown), std::end(shown), each.field) != std::end(shown);
        // A setting as it was before may stay after one warning: a drive may be away today.
        return isOfPage && !(each.mayStay && isProblemTold);
    });
    if (problem != problems.end()) {
        isProblemTold = true;
        const bool isExtension = problem->field == AnySetting(&DownloadSettings::fileExtension);
        complain(problem->message, isExtension ? *extension : *folder);
        return;
    }
    given = wanted;
    openingPort = wanted.port;
    message->Say(ToWx(Filled(text::firstUse::opening, {openingPort})), FieldMessage::Kind::Note);
    LayOut();
    resultTimer.StartOnce(resultMilliseconds);
    owner.apply(wanted);
}

}
