#include "ui/MainWindow.h"

#include "base/WindowMessages.h"
#include "engine/MachineControl.h"
#include "line/TrafficQueue.h"
#include "messages/AppInterface.h"
#include "settings/PortSettings.h"
#include "ui/CustomMessage.h"
#include "ui/FileDrop.h"
#include "ui/HelpBook.h"
#include "ui/MainPanel.h"
#include "ui/Pictures.h"
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
constexpr int lookMilliseconds = 250;
constexpr int closeTickMilliseconds = 20;
const wxSize firstSize(251, 204); // dialog units

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
      remark(new wxStaticText(this, wxID_ANY, wxString())),
      panel(new MainPanel(this, parts.clock)),
      modal([this](bool isEnabled) { EnableInput(isEnabled); }),
      messages(messages),
      boxes({this, messages, [this] { OnHelp("messages.htm"); }, [this] { return modal.IsRunning(); }}),
      caller(*this, parts.engine.MachineName(), parts.clock) {
    SetIcons(ProgramIcons());
    // Without it each paint of a child, once a second on the board, asks this window to paint its ground.
    SetBackgroundStyle(wxBG_STYLE_SYSTEM);
    auto* fill = new wxBoxSizer(wxVERTICAL);
    remark->SetFont(GetFont().Bold());
    remark->Hide();
    fill->Add(remark, wxSizerFlags().Expand().Border(wxALL, FromDIP(6)));
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
    // Where Enter acts too. The toolkit would take the first control that it made.
    panel->changeSettings->SetFocus();
    MakeEndDialogs();
    BindControls();
    panel->monitor->SetPicture("connection.svg");
    panel->monitor->View().SetOwner({&modal, [this](const MessageBoxText& box) { OnMessage(box); }});
    if (!engine.TakesOrders()) {
        panel->viewSwitch->Disable();
        panel->monitor->TheBoard().SeenButton().Disable();
        panel->monitor->LeaveOutFirstUse();
        EnableInput(true);
        lookTimer.Start(lookMilliseconds);
    }
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
    const auto onButton = [this](wxButton* button, std::function<void()> action) {
        // Later: a screen reader presses a button by a call that waits for its handler, and while that shows a dialog
        // the screen reader could not read it. A second click in between may find the button disabled.
        button->Bind(wxEVT_BUTTON, [this, button, kept = std::move(action)](wxCommandEvent&) {
            CallAfter([button, kept] {
                if (button->IsEnabled())
                    kept();
            });
        });
    };
    onButton(panel->changeSettings, [this] { OnChangeSettings(); });
    onButton(panel->sendFile, [this] { OnSendFile(); });
    onButton(panel->receiveFile, [this] { OnReceiveFile(); });
    onButton(panel->test, [this] { OnTest(); });
    onButton(panel->more, [this] { OnMore(); });
    onButton(panel->help, [this] { OnHelp({}); });
    onButton(panel->close, [this] { Close(); });
    panel->viewSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnView(); });
    panel->logSwitch->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnLog(); });
    for (wxCheckBox* handshake : {panel->ctsSwitch, panel->dsrSwitch})
        handshake->Bind(wxEVT_CHECKBOX, [this](wxCommandEvent&) { OnHandshake(); });
    Board& board = panel->monitor->TheBoard();
    board.onSeen = [this](const TransferRecord& failure) { engine.MarkSeen(failure.number, failure.direction); };
    board.onHelp = [this] { OnHelp("errors.htm"); };
    panel->monitor->FirstUse().SetOwner({[this] { return settings; },
                                         [this](const DownloadSettings& chosen) {
                                             settings = chosen;
                                             engine.ApplySettings(settings);
                                             ShowButtons();
                                         },
                                         [this](wxDialog& dialog) { return modal.RunNative(dialog); }, pathsFile});
    SetDropTarget(new FileDrop(*this, {[this](const std::filesystem::path& path) { SendPicked(path); },
                                       [this](const KelText& why) {
                                           OnMessage({why, text::box::problemCaption, okOnly | iconExclamation});
                                       },
                                       [this] { return shown.sendFile.isEnabled && MayAct(); }}));
    Bind(wxEVT_CLOSE_WINDOW, &MainWindow::OnClose, this);
    lookTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { engine.Look(); });
    trafficTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { ShowTraffic(); });
    closeTimer.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnCloseTimer(); });
    for (wxWindow* window : {static_cast<wxWindow*>(panel), static_cast<wxWindow*>(&panel->monitor->PicturePane()),
                             static_cast<wxWindow*>(&board), static_cast<wxWindow*>(&panel->monitor->Traffic())})
        window->Bind(wxEVT_CONTEXT_MENU, &MainWindow::OnContextMenu, this);
    BindHelpKey(*this, [this] { OnHelp("main-window.htm"); });
    Bind(wxEVT_CHAR_HOOK, &MainWindow::OnCharHook, this);
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
    shown = snapshot;
    ShowRemark();
    ShowButtons();
    caller.Look(snapshot, settings);
}

void MainWindow::OnMessage(const MessageBoxText& box) {
    // The page of the first use says all of it, and what mends it. A box would cover it.
    if (!box.endsWithOutage || !panel->monitor->FirstUse().IsShown())
        boxes.Show(box);
}

void MainWindow::OnTrafficArrived() {
    if (!trafficTimer.IsRunning())
        trafficTimer.StartOnce(trafficMilliseconds);
}

void MainWindow::OnSettingsChanged(const DownloadSettings& newSettings) {
    settings = newSettings;
    panel->monitor->FirstUse().ShowSettings(settings);
    ShowButtons();
    caller.Look(shown, settings);
}

void MainWindow::ShowButtons() {
    const std::pair<wxButton*, const ActionButton*> buttons[] = {
        {panel->sendFile, &shown.sendFile}, {panel->test, &shown.test}, {panel->receiveFile, &shown.receiveFile}};
    for (const auto& [button, wanted] : buttons) {
        button->Enable(wanted->isEnabled && MayAct());
        button->Show(wanted->isVisible);
    }
    // Without a flow control that heeds them, the switches would promise something. Many themes show a disabled tick
    // like any other, so it goes too; the setting stays.
    const bool areHeeded = HeedsHandshakes(settings.flowControl);
    const std::pair<wxCheckBox*, bool> handshakes[] = {{panel->ctsSwitch, settings.ctsFlow != 0},
                                                       {panel->dsrSwitch, settings.dsrFlow != 0}};
    for (const auto& [handshake, isOn] : handshakes) {
        handshake->SetValue(areHeeded && isOn);
        handshake->Enable(MayAct() && areHeeded);
    }
}

// While a dialog is open, the user may still look around: View, Help and the traffic stay enabled.
void MainWindow::EnableInput(bool isEnabled) {
    isInputEnabled = isEnabled;
    for (wxWindow* control : {panel->close, panel->more})
        control->Enable(isEnabled);
    for (wxWindow* control : {static_cast<wxWindow*>(panel->changeSettings), static_cast<wxWindow*>(panel->logSwitch)})
        control->Enable(MayAct());
    panel->monitor->FirstUse().EnableInput(isEnabled);
    ShowButtons();
}

bool MainWindow::MayAct() const {
    return isInputEnabled && engine.TakesOrders();
}

void MainWindow::ShowRemark() {
    const wxString text = ToWx(engine.Remark());
    if (text == remark->GetLabelText())
        return;
    remark->SetLabelText(text);
    remark->Show(!text.empty());
    remark->Wrap(GetClientSize().GetWidth() - 2 * FromDIP(6));
    Layout();
}

void MainWindow::ShowTraffic() {
    const std::vector<TrafficLine> newLines = engine.Traffic().Take();
    if (!newLines.empty())
        panel->monitor->Traffic().Append(newLines);
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
    // A user who closes the window may not think of the transfer. The system and a signal do not ask.
    if (!isClosing && event.CanVeto() && IsOnItsWay()) {
        event.Veto();
        CallAfter([this] {
            if (MayBreakTransfer())
                Close(true);
        });
        return;
    }
    // Called again by the timer until all dialogs have closed: the engine stops at the first call.
    if (!std::exchange(isClosing, true)) {
        trafficTimer.Stop();
        lookTimer.Stop();
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
