#include "ui/MainWindow.h"

#include "base/WindowMessages.h"
#include "engine/DownloadApp.h"
#include "messages/AppInterface.h"
#include "messages/MessageAdvice.h"
#include "port/PortNames.h"
#include "settings/SettingsCheck.h"
#include "transfer/NcFilePath.h"
#include "ui/CustomMessage.h"
#include "ui/HelpBook.h"
#include "ui/MainPanel.h"
#include "ui/NcFileDialogs.h"
#include "ui/NumberDialog.h"
#include "ui/Pictures.h"
#include "ui/SettingsDialog.h"
#include "ui/TransferEndDialog.h"
#include "ui/WindowPlacement.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>
#include <utility>

#include <wx/utils.h>

namespace tarvin {

namespace {

constexpr int trafficMilliseconds = 50;
constexpr int closeTickMilliseconds = 20;
const wxSize firstSize(251, 204); // dialog units

// The status, and what stands beside it.
KelText StatusText(const EngineSnapshot& snapshot) {
    KelText text = snapshot.statusLine;
    for (const KelText& beside : {snapshot.notice, snapshot.announcement,
                                  snapshot.quality.IsClean() ? KelText() : DescribeQuality(snapshot.quality)}) {
        if (!beside.empty())
            text += u" - " + beside;
    }
    return text;
}

// Null if the window is no modal dialog.
wxDialog* AsModalDialog(wxWindow* window) {
    auto* dialog = dynamic_cast<wxDialog*>(window);
    return dialog != nullptr && dialog->IsModal() ? dialog : nullptr;
}

}

MainWindow::MainWindow(const Parts& parts, AppInterface& messages)
    : wxFrame(nullptr, wxID_ANY, ToWx(parts.engine.MachineName()), wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE | wxTAB_TRAVERSAL),
      engine(parts.engine),
      events(parts.events),
      help(parts.help),
      pathsFile(parts.pathsFile),
      panel(new MainPanel(this, parts.clock)),
      modal([this](bool isEnabled) { EnableInput(isEnabled); }),
      messages(messages),
      boxes({this, messages, [this] { OnHelp("messages.htm"); }, [this] { return modal.IsRunning(); }}),
      caller(*this, parts.engine.MachineName(), parts.clock) {
    SetIcons(ProgramIcons());
    auto* fill = new wxBoxSizer(wxVERTICAL);
    fill->Add(panel, wxSizerFlags(1).Expand());
    SetSizer(fill);
    // Fonts differ: the window is at least as large as its controls need.
    const wxSize least = fill->GetMinSize();
    SetMinClientSize(least);
    wxSize size = panel->ConvertDialogToPixels(firstSize);
    size.IncTo(least);
    SetClientSize(size);
    if (!RestorePlacement(*this, engine.MachineName()))
        PlaceFirst(*this, engine.MachineName());
    MakeEndDialogs();
    BindControls();
    panel->monitor->SetPicture("connection.svg");
    panel->monitor->View().SetOwner({&modal, [this](const MessageBoxText& box) { OnMessage(box); }});
    // Last: an event uses all of the above.
    events.Attach(*this);
}

MainWindow::~MainWindow() {
    events.Detach();
}

void MainWindow::MakeEndDialogs() {
    const auto showHelp = [this] { OnHelp("transfers.htm"); };
    downloadEnd = MakeDownloadEndDialog(this, showHelp, [this] { engine.CancelDownload(); });
    uploadEnd = MakeUploadEndDialog(
        this, showHelp, [this] { engine.CancelUpload(); }, [this] { engine.CompleteUpload(); });
}

void MainWindow::BindControls() {
    const auto onButton = [](wxButton* button, std::function<void()> action) {
        button->Bind(wxEVT_BUTTON, [kept = std::move(action)](wxCommandEvent&) { kept(); });
    };
    onButton(panel->changeSettings, [this] { OnChangeSettings(); });
    onButton(panel->sendFile, [this] { OnSendFile(); });
    onButton(panel->receiveFile, [this] { OnReceiveFile(); });
    onButton(panel->test, [this] { engine.StartLoopbackTest(); });
    onButton(panel->help, [this] { OnHelp({}); });
    onButton(panel->close, [this] { Close(); });
    panel->viewSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnView(); });
    panel->logSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnLog(); });
    for (wxCheckBox* handshake : {panel->ctsSwitch, panel->dsrSwitch})
        handshake->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnHandshake(); });
    Board& board = panel->monitor->TheBoard();
    board.onSeen = [this](const TransferRecord& failure) { engine.MarkSeen(failure.number, failure.direction); };
    board.onHelp = [this] { OnHelp("transfers.htm"); };
    Bind(wxEVT_CLOSE_WINDOW, &MainWindow::OnClose, this);
    trafficTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowTraffic(); });
    closeTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnCloseTimer(); });
    for (wxWindow* window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->monitor->PicturePane()),
                             static_cast<wxWindow*>(&board), static_cast<wxWindow*>(&panel->monitor->Traffic())})
        window->Bind(wxEVT_CONTEXT_MENU, &MainWindow::OnContextMenu, this);
    BindHelpKey(*this, [this] { OnHelp("main-window.htm"); });
    Bind(wxEVT_CHAR_HOOK, &MainWindow::OnCharHook, this);
}

// The handshake switches have no caption that could mark a key.
void MainWindow::OnCharHook(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    wxCheckBox* handshake = key == 'O' ? panel->ctsSwitch : key == 'D' ? panel->dsrSwitch : nullptr;
    if (event.GetModifiers() == wxMOD_ALT && handshake != nullptr && handshake->IsEnabled()) {
        handshake->SetValue(!handshake->GetValue());
        OnHandshake();
        return;
    }
    if (panel->monitor->IsTrafficShown() && panel->monitor->View().HandleKey(event))
        return;
    event.Skip();
}

void MainWindow::OnSnapshotChanged() {
    const EngineSnapshot snapshot = engine.Snapshot();
    if (snapshot.caption != shown.caption)
        SetTitle(ToWx(snapshot.caption));
    panel->statusLine->ShowStatus(ToWx(StatusText(snapshot)), OutlookOf(snapshot));
    panel->progressBar->SetProgress(snapshot.progressPosition, snapshot.progressRange);
    panel->monitor->ShowSnapshot(snapshot);
    panel->received->SetLit(snapshot.lamps.received);
    panel->transmitted->SetLit(snapshot.lamps.transmitted);
    const LineHolds& holds = snapshot.lamps.holds;
    panel->ctsHold->SetLit(holds.cts);
    panel->dsrHold->SetLit(holds.dsr);
    panel->rlsHold->SetLit(holds.rlsd);
    panel->xoffHold->SetLit(holds.xoff);
    panel->xoffSent->SetLit(holds.xoffSent);
    // The engine gets to know of a log when the user has chosen its file.
    if (!isAskingForLog)
        panel->logSwitch->SetValue(snapshot.isCommsLogOn);
    uploadEnd->Appear(snapshot.endDialog == EndDialog::Upload);
    downloadEnd->Appear(snapshot.endDialog == EndDialog::Download);
    caller.Look(snapshot, settings);
    shown = snapshot;
    ShowButtons();
}

void MainWindow::OnTrafficArrived() {
    if (!trafficTimer.IsRunning())
        trafficTimer.StartOnce(trafficMilliseconds);
}

void MainWindow::OnAttentionWanted() {
    RequestUserAttention();
    wxBell();
}

void MainWindow::OnSettingsChanged(const DownloadSettings& newSettings) {
    settings = newSettings;
    panel->ctsSwitch->SetValue(settings.ctsFlow != 0);
    panel->dsrSwitch->SetValue(settings.dsrFlow != 0);
}

void MainWindow::ShowButtons() {
    const std::pair<wxButton*, const ActionButton*> buttons[] = {
        {panel->sendFile, &shown.sendFile}, {panel->test, &shown.test}, {panel->receiveFile, &shown.receiveFile}};
    for (const auto& [button, wanted] : buttons) {
        button->Enable(wanted->isEnabled && isInputEnabled);
        button->Show(wanted->isVisible);
    }
}

// While a dialog is open, the user may still look around: View, Help and the traffic stay enabled.
void MainWindow::EnableInput(bool isEnabled) {
    isInputEnabled = isEnabled;
    for (wxWindow* control : {static_cast<wxWindow*>(panel->changeSettings), static_cast<wxWindow*>(panel->close),
                              static_cast<wxWindow*>(panel->logSwitch), static_cast<wxWindow*>(panel->ctsSwitch),
                              static_cast<wxWindow*>(panel->dsrSwitch)})
        control->Enable(isEnabled);
    ShowButtons();
}

void MainWindow::ShowTraffic() {
    const std::vector<TrafficLine> newLines = engine.Traffic().Take();
    if (!newLines.empty())
        panel->monitor->Traffic().Append(newLines);
}

void MainWindow::OnView() {
    const bool isTraffic = panel->viewSwitch->GetValue();
    engine.Traffic().SetWanted(isTraffic);
    panel->monitor->Traffic().Clear();
    panel->monitor->ShowTraffic(isTraffic);
}

void MainWindow::OnLog() {
    if (!panel->logSwitch->GetValue()) {
        engine.StopCommsLog();
        return;
    }
    isAskingForLog = true;
    const auto path = AskForCommsLog(this, modal, settings);
    isAskingForLog = false;
    if (!path) {
        panel->logSwitch->SetValue(shown.isCommsLogOn);
        return;
    }
    // If the log cannot be opened, a later snapshot switches it off here.
    engine.StartCommsLog(*path);
}

void MainWindow::OnHandshake() {
    const bool heedsCts = panel->ctsSwitch->GetValue();
    const bool heedsDsr = panel->dsrSwitch->GetValue();
    // The engine gets the change too, but the settings dialog may be opened before its answer.
    settings.ctsFlow = heedsCts ? 1 : 0;
    settings.dsrFlow = heedsDsr ? 1 : 0;
    engine.SetHandshakes(heedsCts, heedsDsr);
}

void MainWindow::OnChangeSettings() {
    const SettingsDialog::Owner owner = {[this](const DownloadSettings& changed) {
                                             settings = changed;
                                             engine.KeepSettings(settings);
                                         },
                                         [this] { OnHelp("settings.htm"); },
                                         [this](wxDialog& dialog) { return modal.RunNative(dialog); }};
    SettingsDialog dialog(this, settings, FindPorts(pathsFile, settings.port), owner);
    if (modal.Run(dialog) != wxID_OK)
        return;
    settings = dialog.Settings();
    engine.ApplySettings(settings);
}

// The settings as the file dialogs use them: with the folders and the extension that the user has picked last. The
// controller's own change in the settings dialog only.
DownloadSettings MainWindow::PickedSettings() const {
    DownloadSettings picked = settings;
    picked.downloadPath = sendFolder.value_or(settings.downloadPath);
    picked.uploadPath = receiveFolder.value_or(settings.uploadPath);
    picked.fileExtension = pickedExtension.value_or(settings.fileExtension);
    return picked;
}

void MainWindow::OnSendFile() {
    const auto path = AskForNcFileToSend(this, modal, PickedSettings(), shown.transferPath);
    if (!path)
        return;
    sendFolder = AsFolderSetting(FromPath(path->parent_path()));
    pickedExtension = AsExtensionSetting(FromPath(path->extension()));
    if (shown.isConversation)
        PutForMachine(*path);
    else
        engine.SendFile(*path);
}

// The machine asks for its files by number. So the file is put where the machine will find it.
void MainWindow::PutForMachine(const std::filesystem::path& path) {
    const KelText fileName = FromPath(path.filename());
    NumberDialog dialog(this, fileName, SuggestedNumber(fileName), [this] { OnHelp("transfers.htm"); });
    if (modal.Run(dialog) != wxID_OK)
        return;
    const KelText number = dialog.Number();
    const KelText target = NcFilePath(settings.downloadPath, number, settings.fileExtension);
    std::error_code ignored;
    const bool isThere =
        std::filesystem::exists(ToPath(target), ignored) && !std::filesystem::equivalent(ToPath(target), path, ignored);
    if (isThere && ShowBox({Filled(text::box::replaceNcFile, {target}), text::box::replaceCaption,
                            yesNo | iconQuestion | defaultButton2}) != yesButton.answer)
        return;
    const wxBusyCursor busy;
    if (const auto copied = CopyNcFile(path, ToPath(target)); !copied)
        OnMessage(WithAdvice(MessageKind::FileNotCopied,
                             {Filled(text::box::notCopied, {FromPath(path), target, copied.Reason().text}),
                              text::box::problemCaption, okOnly | iconExclamation}));
    else
        engine.Announce(Filled(text::notice::fileIsReady, {fileName, number}));
}

void MainWindow::OnReceiveFile() {
    const auto path = AskForNcFileToReceive(this, modal, PickedSettings(), shown.transferPath);
    if (!path)
        return;
    receiveFolder = AsFolderSetting(FromPath(path->parent_path()));
    pickedExtension = AsExtensionSetting(FromPath(path->extension()));
    engine.ReceiveFile(*path);
}

void MainWindow::OnContextMenu(wxContextMenuEvent&) {
    wxMenu menu;
    const auto add = [&menu](KelTextView label, bool isEnabled, std::function<void()> action) {
        wxMenuItem* item = menu.Append(wxID_ANY, ToWx(label));
        item->Enable(isEnabled);
        menu.Bind(
            wxEVT_MENU, [kept = std::move(action)](wxCommandEvent&) { kept(); }, item->GetId());
    };
    if (panel->monitor->IsTrafficShown()) {
        panel->monitor->View().AppendTo(menu);
        menu.AppendSeparator();
    }
    add(text::menu::resetLink, isInputEnabled, [this] { engine.ResetLink(); });
    add(text::menu::xoffTest, isInputEnabled, [this] { engine.SendXoffTest(); });
    isMenuOpen = true;
    PopupMenu(&menu);
    isMenuOpen = false;
}

void MainWindow::OnHelp(const wxString& page) {
    if (!help.Show(this, page))
        OnMessage(WithAdvice(MessageKind::NoHelpBook,
                             {text::box::noHelpBook, text::box::problemCaption, okOnly | iconInformation}));
}

int MainWindow::ShowBox(const MessageBoxText& box) {
    // In front of the dialog that is open, or the user could not reach the box.
    wxWindow* owner = modal.Top() != nullptr ? modal.Top() : this;
    CustomMessage message(owner, box, [this] { OnHelp("messages.htm"); });
    modal.Run(message);
    if (box.dontShowAgainId && message.IsSuppressed())
        messages.SuppressMessage(*box.dontShowAgainId);
    return message.Answer();
}

bool MainWindow::IsAnythingOpen() const {
    return isMenuOpen || modal.IsRunning() ||
           std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                       [](wxWindow* window) { return AsModalDialog(window) != nullptr; });
}

void MainWindow::CloseDialogs() {
    modal.CloseAll();
    // Dialogs of the toolkit itself, such as those of the help window.
    for (wxWindow* window : wxTopLevelWindows) {
        if (wxDialog* dialog = AsModalDialog(window))
            dialog->EndModal(wxID_CANCEL);
    }
}

void MainWindow::OnCloseTimer() {
    if (!IsAnythingOpen()) {
        Close(true);
    } else if (--closeTicksLeft <= 0) {
        // A menu, or a part of a system's dialog, cannot be closed from here and would keep the process. The engine has
        // stopped in order, and its settings and logs are on the disk.
        std::_Exit(0);
    }
}

void MainWindow::OnClose(wxCloseEvent& event) {
    // Called again by the timer until all dialogs have closed: the engine stops at the first call.
    if (!std::exchange(isClosing, true)) {
        trafficTimer.Stop();
        SavePlacement(*this, engine.MachineName());
        boxes.CloseAll();
        engine.Stop();
    }
    // Each open dialog and menu runs a loop of its own. The window can be destroyed after all of them have ended.
    if (IsAnythingOpen()) {
        if (event.CanVeto())
            event.Veto();
        if (!closeTimer.IsRunning())
            closeTimer.Start(closeTickMilliseconds);
        CloseDialogs();
        return;
    }
    closeTimer.Stop();
    events.Detach();
    help.Close();
    // Destroys the end dialogs too.
    Destroy();
}

}
