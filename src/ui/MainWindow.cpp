#include "ui/MainWindow.h"

#include "port/PortNames.h"
#include "ui/CustomMessage.h"
#include "ui/DownloadEndDialog.h"
#include "ui/HelpKey.h"
#include "ui/NcFileDialogs.h"
#include "ui/Pictures.h"
#include "ui/SettingsDialog.h"
#include "ui/UiText.h"
#include "ui/UploadEndDialog.h"
#include "ui/WindowPlacement.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace tarvin {

namespace {

constexpr int trafficMilliseconds = 50;
constexpr int closeTickMilliseconds = 20;
const wxSize firstSize(251, 204); // dialog units

// Null for everything else.
wxDialog* AsModalDialog(wxWindow* window) {
    auto* dialog = dynamic_cast<wxDialog*>(window);
    return dialog != nullptr && dialog->IsModal() ? dialog : nullptr;
}

TextLines::Kind KindOf(TrafficLine::Kind kind) {
    switch (kind) {
    case TrafficLine::Kind::Received:
        return TextLines::Kind::Received;
    case TrafficLine::Kind::Transmitted:
        return TextLines::Kind::Transmitted;
    case TrafficLine::Kind::Note:
        break;
    }
    return TextLines::Kind::Note;
}

}

MainWindow::MainWindow(const Parts& parts, AppInterface& messageApp)
    : wxFrame(nullptr, wxID_ANY, ToWx(parts.engine.MachineName()), wxDefaultPosition, wxDefaultSize,
              wxDEFAULT_FRAME_STYLE | wxTAB_TRAVERSAL),
      engine(parts.engine),
      events(parts.events),
      help(parts.help),
      pathsFile(parts.pathsFile),
      panel(new MainPanel(this)),
      modal([this](bool isEnabled) { EnableInput(isEnabled); }),
      messages(messageApp) {
    SetIcons(ProgramIcons());
    auto* fill = new wxBoxSizer(wxVERTICAL);
    fill->Add(panel, wxSizerFlags(1).Expand());
    SetSizer(fill);
    const wxSize least = fill->GetMinSize();
    SetMinClientSize(least);
    wxSize size = panel->ConvertDialogToPixels(firstSize);
    size.IncTo(least);
    SetClientSize(size);
    if (!RestorePlacement(*this, engine.MachineName()))
        CentreOnScreen();
    MakeEndDialogs();
    BindControls();
    BindKeys();
    AttachToEngine();
    panel->monitor->SetPicture("connection.svg");
}

MainWindow::~MainWindow() {
    events.Detach();
}

void MainWindow::MakeEndDialogs() {
    const auto showHelp = [this] { OnHelp("transfers.htm"); };
    uploadEnd = new UploadEndDialog(
        this, showHelp, [this] { engine.Post([&app = engine] { app.CompleteUpload(); }); },
        [this] { engine.Post([&app = engine] { app.CancelUpload(); }); });
    downloadEnd =
        new DownloadEndDialog(this, showHelp, [this] { engine.Post([&app = engine] { app.CancelDownload(); }); });
}

void MainWindow::BindControls() {
    const auto onButton = [](wxButton* button, std::function<void()> action) {
        button->Bind(wxEVT_BUTTON, [kept = std::move(action)](wxCommandEvent&) { kept(); });
    };
    onButton(panel->changeSettings, [this] { OnChangeSettings(); });
    onButton(panel->sendFile, [this] { OnSendFile(); });
    onButton(panel->receiveFile, [this] { OnReceiveFile(); });
    onButton(panel->test, [this] { engine.Post([&app = engine] { app.StartLoopbackTest(); }); });
    onButton(panel->help, [this] { OnHelp({}); });
    onButton(panel->close, [this] { Close(); });
    panel->viewSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnView(); });
    panel->logSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnLog(); });
    for (wxCheckBox* handshake : {panel->ctsSwitch, panel->dsrSwitch})
        handshake->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnHandshake(); });
    Bind(wxEVT_CLOSE_WINDOW, &MainWindow::OnClose, this);
    trafficTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowTraffic(); });
    closeTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnCloseTimer(); });
    for (wxWindow* window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->monitor->PicturePane()),
                             static_cast<wxWindow*>(&panel->monitor->Traffic())})
        window->Bind(wxEVT_CONTEXT_MENU, &MainWindow::OnContextMenu, this);
}

// The two switches without a caption of their own, and help for the window that is in front.
void MainWindow::BindKeys() {
    BindHelpKey(*this, [this] { OnHelp("main-window.htm"); });
    Bind(wxEVT_CHAR_HOOK, &MainWindow::OnCharHook, this);
}

void MainWindow::OnCharHook(wxKeyEvent& event) {
    const int key = event.GetKeyCode();
    wxCheckBox* handshake = key == 'O' ? panel->ctsSwitch : key == 'D' ? panel->dsrSwitch : nullptr;
    if (event.GetModifiers() == wxMOD_ALT && handshake != nullptr && handshake->IsEnabled()) {
        handshake->SetValue(!handshake->GetValue());
        OnHandshake();
        return;
    }
    event.Skip();
}

void MainWindow::AttachToEngine() {
    events.Attach({[this] { ShowSnapshot(); },
                   [this] {
                       if (!trafficTimer.IsRunning())
                           trafficTimer.StartOnce(trafficMilliseconds);
                   },
                   [this](const MessageBoxText& box) {
                       waitingMessages.push_back(box);
                       ShowNextMessage();
                   },
                   [this] {
                       RequestUserAttention();
                       wxBell();
                   },
                   [this](const DownloadSettings& newSettings) {
                       settings = newSettings;
                       panel->ctsSwitch->SetValue(settings.ctsFlow != 0);
                       panel->dsrSwitch->SetValue(settings.dsrFlow != 0);
                   }});
}

void MainWindow::ShowSnapshot() {
    const EngineSnapshot snapshot = engine.Snapshot();
    if (snapshot.caption != shown.caption)
        SetTitle(ToWx(snapshot.caption));
    panel->statusLine->ShowStatus(ToWx(snapshot.statusLine), OutlookOf(snapshot));

    panel->progressBar->SetProgress(snapshot.progressPosition, snapshot.progressRange);
    panel->monitor->SetPicture(snapshot.hasLink ? "connection.svg" : "connection-broken.svg");
    ShowLamps(snapshot.lamps);
    // While its file is asked for, the switch is ahead of the engine.
    if (snapshot.isCommsLogOn != panel->logSwitch->GetValue() && isInputEnabled)
        panel->logSwitch->SetValue(snapshot.isCommsLogOn);
    shown = snapshot;
    ShowButtons(shown);
    uploadEnd->Appear(shown.endDialog == EndDialog::Upload);
    downloadEnd->Appear(shown.endDialog == EndDialog::Download);
}

void MainWindow::ShowLamps(const Lamps& lamps) {
    panel->received->SetLit(lamps.received);
    panel->transmitted->SetLit(lamps.transmitted);
    panel->ctsHold->SetLit(lamps.ctsHold);
    panel->dsrHold->SetLit(lamps.dsrHold);
    panel->rlsHold->SetLit(lamps.rlsdHold);
    panel->xoffHold->SetLit(lamps.xoffHold);
    panel->xoffSent->SetLit(lamps.xoffSent);
}

void MainWindow::ShowButtons(const EngineSnapshot& snapshot) {
    const std::pair<wxButton*, const ActionButton*> buttons[] = {{panel->sendFile, &snapshot.sendFile},
                                                                 {panel->test, &snapshot.test},
                                                                 {panel->receiveFile, &snapshot.receiveFile}};
    for (const auto& [button, wanted] : buttons) {
        button->Enable(wanted->isEnabled && isInputEnabled);
        button->Show(wanted->isVisible);
    }
}

void MainWindow::EnableInput(bool isEnabled) {
    isInputEnabled = isEnabled;
    for (wxWindow* control : {static_cast<wxWindow*>(panel->changeSettings), static_cast<wxWindow*>(panel->close),
                              static_cast<wxWindow*>(panel->logSwitch), static_cast<wxWindow*>(panel->ctsSwitch),
                              static_cast<wxWindow*>(panel->dsrSwitch)})
        control->Enable(isEnabled);
    ShowButtons(shown);
}

void MainWindow::ShowTraffic() {
    std::vector<TextPane::NewLine> newLines;
    for (TrafficLine& line : engine.Traffic().Take())
        newLines.push_back({KindOf(line.kind), std::move(line.text), line.extendsLast});
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
        engine.Post([&app = engine] { app.StopCommsLog(); });
        return;
    }
    const auto path = AskForCommsLog(this, modal, settings);
    if (!path) {
        panel->logSwitch->SetValue(false);
        return;
    }
    engine.Post([this, &app = engine, file = *path] {
        app.StartCommsLog(file);
        // A log that could not be begun changes nothing in the snapshot, and the switch is on.
        events.Post([this] { ShowSnapshot(); });
    });
}

void MainWindow::OnHandshake() {
    const bool isCtsHeeded = panel->ctsSwitch->GetValue();
    const bool isDsrHeeded = panel->dsrSwitch->GetValue();
    settings.ctsFlow = isCtsHeeded ? 1 : 0;
    settings.dsrFlow = isDsrHeeded ? 1 : 0;
    engine.Post([&app = engine, isCtsHeeded, isDsrHeeded] { app.SetHandshakes(isCtsHeeded, isDsrHeeded); });
}

void MainWindow::OnChangeSettings() {
    const SettingsDialog::Owner owner = {[this](const DownloadSettings& changed) {
                                             settings = changed;
                                             engine.Post([&app = engine, kept = settings] { app.KeepSettings(kept); });
                                         },
                                         [this] { OnHelp("settings.htm"); },
                                         [this](wxDialog& dialog) { return modal.RunNative(dialog); }};
    SettingsDialog dialog(this, settings, FindPorts(pathsFile, settings.port), owner);
    if (modal.Run(dialog) != wxID_OK)
        return;
    settings = dialog.Settings();
    engine.Post([&app = engine, applied = settings] { app.ApplySettings(applied); });
}

void MainWindow::OnSendFile() {
    if (const auto path = AskForNcFileToSend(this, modal, settings, shown.transferPath))
        engine.Post([&app = engine, file = *path] { app.SendFile(file); });
}

void MainWindow::OnReceiveFile() {
    if (const auto path = AskForNcFileToReceive(this, modal, settings, shown.transferPath))
        engine.Post([&app = engine, file = *path] { app.ReceiveFile(file); });
}

void MainWindow::OnContextMenu(wxContextMenuEvent&) {
    TextPane& traffic = panel->monitor->Traffic();
    wxMenu menu;
    const auto add = [&menu](const wxString& label, bool isEnabled, std::function<void()> action) {
        wxMenuItem* item = menu.Append(wxID_ANY, label);
        item->Enable(isEnabled);
        menu.Bind(
            wxEVT_MENU, [kept = std::move(action)](wxCommandEvent&) { kept(); }, item->GetId());
    };
    if (panel->monitor->IsTrafficShown()) {
        add("&Copy\tCtrl+C", traffic.HasSelection(), [&traffic] { traffic.Copy(); });
        add("Select &All\tCtrl+A", traffic.Lines().Count() > 0, [&traffic] { traffic.SelectAll(); });
        add("C&lear", traffic.Lines().Count() > 0, [&traffic] { traffic.Clear(); });
        add("&Follow the End\tEnd", !traffic.IsFollowing(), [&traffic] { traffic.Follow(); });
        menu.AppendSeparator();
    }
    add("&Reset Link", isInputEnabled, [this] { engine.Post([&app = engine] { app.EndOfServe(); }); });
    add("&XOFF/XON Test", isInputEnabled, [this] { engine.Post([&app = engine] { app.SendXoffTest(); }); });
    isMenuOpen = true;
    PopupMenu(&menu);
    isMenuOpen = false;
}

void MainWindow::OnHelp(const wxString& page) {
    if (!help.Show(this, page))
        waitingMessages.push_back(
            {u"The help book comshelp.htb is missing or damaged.", u"Problem", okOnly | iconInformation});
    ShowNextMessage();
}

void MainWindow::ShowNextMessage() {
    while (!isMessageOpen && !isClosing && !waitingMessages.empty()) {
        const MessageBoxText box = std::move(waitingMessages.front());
        waitingMessages.pop_front();
        isMessageOpen = true;
        messages.MessageBox(box);
        isMessageOpen = false;
    }
}

int MainWindow::ShowBox(const MessageBoxText& box) {
    wxWindow* owner = modal.Top() != nullptr ? modal.Top() : this;
    CustomMessage message(owner, box, [this] { OnHelp("messages.htm"); });
    modal.Run(message);
    if (box.dontShowAgainId && message.IsNotToBeShownAgain())
        messages.SuppressMessage(*box.dontShowAgainId);
    return message.Answer();
}

TransferEndDialog* MainWindow::ShownEndDialog() const {
    for (TransferEndDialog* dialog :
         {static_cast<TransferEndDialog*>(uploadEnd), static_cast<TransferEndDialog*>(downloadEnd)}) {
        if (dialog != nullptr && dialog->IsShown())
            return dialog;
    }
    return nullptr;
}

bool MainWindow::IsAnythingOpen() const {
    return isMenuOpen || modal.IsRunning() ||
           std::any_of(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                       [](wxWindow* window) { return AsModalDialog(window) != nullptr; });
}

// Dialogs and menus have loops of their own, which have to end before the window may go.
void MainWindow::CloseWhatIsOpen() {
    modal.CloseAll();
    // Those of the toolkit itself, such as the help window's.
    for (wxWindow* window : wxTopLevelWindows) {
        if (wxDialog* dialog = AsModalDialog(window))
            dialog->EndModal(wxID_CANCEL);
    }
}

void MainWindow::OnCloseTimer() {
    if (!IsAnythingOpen()) {
        Close(true);
    } else if (--closeTicksLeft <= 0) {
        // A menu, or something within a dialog of the system, waits for an answer. The engine has ended in order, and
        // nothing else is owed.
        std::_Exit(0);
    }
}

void MainWindow::OnClose(wxCloseEvent& event) {
    if (!std::exchange(isClosing, true)) {
        trafficTimer.Stop();
        SavePlacement(*this, engine.MachineName());
        engine.Terminate();
    }
    if (IsAnythingOpen()) {
        if (event.CanVeto())
            event.Veto();
        if (!closeTimer.IsRunning())
            closeTimer.Start(closeTickMilliseconds);
        CloseWhatIsOpen();
        return;
    }
    closeTimer.Stop();
    events.Detach();
    help.Close();
    // The end dialogs go with their owner.
    Destroy();
}

}
