// What a user does in the main window.

#include "base/MoreMessages.h"
#include "base/System.h"
#include "base/Version.h"
#include "base/WindowMessages.h"
#include "engine/MachineControl.h"
#include "history/HistoryDatabase.h"
#include "line/TrafficQueue.h"
#include "messages/AppInterface.h"
#include "messages/MessageAdvice.h"
#include "port/PortNames.h"
#include "settings/PortSettings.h"
#include "settings/SettingsCheck.h"
#include "settings/SettingsFields.h"
#include "transfer/NcFilePath.h"
#include "ui/ActionMenu.h"
#include "ui/CustomMessage.h"
#include "ui/HelpBook.h"
#include "ui/HistoryDialog.h"
#include "ui/LicencesDialog.h"
#include "ui/MainPanel.h"
#include "ui/MainWindow.h"
#include "ui/NcFileDialogs.h"
#include "ui/NcFolderDialog.h"
#include "ui/NumberDialog.h"
#include "ui/SettingsDialog.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <wx/utils.h>

namespace tarvin {

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
    DownloadSettings changed = settings;
    changed.ctsFlow = heedsCts ? 1 : 0;
    changed.dsrFlow = heedsDsr ? 1 : 0;
    if (ReopensPort(settings, changed) && !MayBreakTransfer()) {
        OnSettingsChanged(settings);
        return;
    }
    // The engine gets the change too, but the settings dialog may be opened before its answer.
    settings = changed;
    engine.SetHandshakes(heedsCts, heedsDsr);
}

void MainWindow::OnChangeSettings() {
    // While the dialog is open, the settings may be reloaded. Of the dialog counts what the user changes in it.
    const DownloadSettings opened = settings;
    const SettingsDialog::Owner owner = {[this, opened](const DownloadSettings& changed) {
                                             settings = MergedSettings(settings, opened, changed);
                                             engine.KeepSettings(settings);
                                         },
                                         [this] { OnHelp("settings.htm"); },
                                         [this](wxDialog& dialog) { return modal.RunNative(dialog); },
                                         [this] { return messages.ShowAllMessages(); }};
    SettingsDialog dialog(this, settings, FindPorts(pathsFile, settings.port), owner);
    do {
        if (modal.Run(dialog) != wxID_OK)
            return;
        // A user who keeps the transfer on gets the dialog back with all that was changed.
    } while (ReopensPort(settings, MergedSettings(settings, opened, dialog.Settings())) && !MayBreakTransfer());
    settings = MergedSettings(settings, opened, dialog.Settings());
    engine.ApplySettings(settings);
    ShowButtons();
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
    if (const auto path = AskForNcFileToSend(this, modal, PickedSettings(), shown.transferPath))
        SendPicked(*path);
}

void MainWindow::SendPicked(const std::filesystem::path& path) {
    sendFolder = AsFolderSetting(FromPath(path.parent_path()));
    pickedExtension = AsExtensionSetting(FromPath(path.extension()));
    if (shown.isConversation)
        PutForMachine(path);
    else
        engine.SendFile(path);
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

// What the menu "More" and the menu of the right button share.
void MainWindow::AddLineItems(ActionMenu& menu) {
    menu.Add(text::menu::resetLink, MayAct(), [this] { OnResetLink(); });
    menu.Add(text::menu::xoffTest, MayAct(), [this] { engine.SendXoffTest(); });
}

void MainWindow::OnContextMenu(wxContextMenuEvent&) {
    ActionMenu menu(*this);
    if (panel->monitor->IsTrafficShown()) {
        panel->monitor->View().AppendTo(menu);
        menu.AppendSeparator();
    }
    AddLineItems(menu);
    isMenuOpen = true;
    PopupMenu(&menu);
    isMenuOpen = false;
}

void MainWindow::OnMore() {
    ActionMenu menu(*this);
    AddLineItems(menu);
    menu.AppendSeparator();
    menu.Add(text::more::openFolder, true, [this] { OpenFolder(ToPath(settings.downloadPath)); });
    menu.Add(text::more::files, isInputEnabled, [this] { OnFiles(); });
    menu.Add(text::more::history, isInputEnabled, [this] { OnHistory(); });
    menu.AppendSeparator();
    menu.Add(text::more::copyStatus, true, [this] { CopyStatus(); });
    menu.Add(text::more::about, isInputEnabled, [this] { OnAbout(); });
    isMenuOpen = true;
    panel->more->PopupMenu(&menu, 0, panel->more->GetSize().GetHeight());
    isMenuOpen = false;
}

void MainWindow::OpenFolder(const std::filesystem::path& folder) {
    if (!wxLaunchDefaultApplication(ToWx(FromPath(folder))))
        OnMessage({Filled(text::more::folderNotOpened, {FromPath(folder)}), text::box::problemCaption,
                   okOnly | iconExclamation});
}

void MainWindow::OnFiles() {
    NcFolderDialog dialog(this, settings.downloadPath, settings.fileExtension, [this] { OnHelp("more.htm"); });
    modal.Run(dialog);
}

void MainWindow::OnHistory() {
    HistoryDialog dialog(this, HistoryFile(pathsFile.parent_path()), engine.MachineName(),
                         {[this] { OnHelp("history.htm"); },
                          [this](const std::filesystem::path& folder) { OpenFolder(folder); },
                          [this](wxDialog& native) { return modal.RunNative(native); }});
    modal.Run(dialog);
}

// For a message to the technician.
void MainWindow::CopyStatus() {
    const KelText status =
        shown.caption + u"\n" + StatusText(shown) + u"\n" + panel->monitor->TheBoard().Content().Spoken();
    CopyToClipboard(ToWx(status));
}

void MainWindow::OnAbout() {
    const KelText about = Filled(text::more::aboutText, {FromUtf8(programVersion), SystemName(),
                                                         FromPath(pathsFile.parent_path()), engine.MachineName()});
    CustomMessage dialog(this, {about, text::more::aboutCaption, okOnly | iconInformation},
                         [this] { OnHelp("about.htm"); });
    // Later: a screen reader presses the button by a call that waits for its handler.
    dialog.AddButton(text::more::licences, [this] { CallAfter([this] { OnLicences(); }); });
    modal.Run(dialog);
}

void MainWindow::OnLicences() {
    LicencesDialog dialog(modal.Top() != nullptr ? modal.Top() : this, [this] { OnHelp("about.htm"); });
    modal.Run(dialog);
}

void MainWindow::OnTest() {
    if (MayBreakTransfer())
        engine.StartLoopbackTest();
}

void MainWindow::OnResetLink() {
    if (MayBreakTransfer())
        engine.ResetLink();
}

bool MainWindow::IsOnItsWay() const {
    return engine.TakesOrders() && IsTransferring(engine.Snapshot().transferState);
}

// True if no file is on its way, or if the user wants it broken off. The same question is asked once at a time.
bool MainWindow::MayBreakTransfer() {
    const EngineSnapshot snapshot = engine.Snapshot();
    if (!IsTransferring(snapshot.transferState) || !snapshot.progress)
        return true;
    if (std::exchange(isAskingToBreak, true))
        return false;
    const TransferProgress& progress = *snapshot.progress;
    const bool isSizeKnown = progress.bytesTotal > 0;
    const KelText share =
        isSizeKnown ? ToText(PercentDone(progress.bytesDone, progress.bytesTotal)) : GroupedText(progress.bytesDone);
    const KelText question =
        Filled(progress.direction == TransferDirection::ToMachine ? text::more::breakSent : text::more::breakReceived,
               {progress.number, share});
    const int answer = ShowBox({question, text::more::breakCaption, yesNo | iconQuestion | defaultButton2});
    isAskingToBreak = false;
    return answer == yesButton.answer;
}

void MainWindow::OnHelp(const wxString& page) {
    if (!help.Show(this, page))
        OnMessage(WithAdvice(MessageKind::NoHelpBook,
                             {text::box::noHelpBook, text::box::problemCaption, okOnly | iconExclamation}));
}

}
