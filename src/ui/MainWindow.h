#pragma once
// The main window: shows the engine's snapshot and traffic, and calls the engine for the user. User-interface thread.

#include "messages/MessageReport.h"
#include "settings/DownloadSettings.h"
#include "ui/Caller.h"
#include "ui/MessageBoxes.h"
#include "ui/ModalLoop.h"
#include "ui/WindowEvents.h"

#include <filesystem>
#include <optional>
#include <string>

#include <wx/stattext.h>
#include <wx/timer.h>

namespace tarvin {

class ActionMenu;
class AppInterface;
class HelpBook;
class MachineControl;
class MainPanel;
class TransferEndDialog;

class MainWindow : public wxFrame, private WindowEvents::Receiver {
public:
    // All of them outlive the window.
    struct Parts {
        MachineControl& engine;
        WindowEvents& events;
        HelpBook& help;
        // The engine's.
        const Clock& clock;
        // KEL.INI, which names the ports.
        std::filesystem::path pathsFile;
    };

    // Attaches the window to the events. `messages` outlives it.
    MainWindow(const Parts& parts, AppInterface& messages);
    ~MainWindow() override;

    // Asks the user the question of the box, waits, and returns the answer as the Windows message box numbers it. The
    // window goes on showing the engine meanwhile.
    int ShowBox(const MessageBoxText& box);

    MainPanel& Panel() { return *panel; }
    ModalLoop& Dialogs() { return modal; }
    // What stands above the panel. Hidden for a machine that this program serves.
    wxStaticText& RemarkText() { return *remark; }

private:
    void MakeEndDialogs();
    void BindControls();

    void OnSnapshotChanged() override;
    void OnTrafficArrived() override;
    void OnMessage(const MessageBoxText& box) override;
    void OnOutageEnded() override { boxes.EndOutage(); }
    void OnSettingsChanged(const DownloadSettings& newSettings) override;

    void ShowButtons();
    void ShowTraffic();
    void EnableInput(bool isEnabled);
    // Whether the user may act on the machine now.
    bool MayAct() const;
    void ShowRemark();

    void OnView();
    void OnLog();
    void OnHandshake();
    void OnChangeSettings();
    void OnSendFile();
    void SendPicked(const std::filesystem::path& path);
    void OnReceiveFile();
    void OnTest();
    void OnResetLink();
    void OnMore();
    void OnFiles();
    void OnHistory();
    void OnAbout();
    void OnLicences();
    void OpenFolder(const std::filesystem::path& folder);
    void CopyStatus();
    bool IsOnItsWay() const;
    bool MayBreakTransfer();
    DownloadSettings PickedSettings() const;
    void PutForMachine(const std::filesystem::path& path);
    void AddLineItems(ActionMenu& menu);
    void OnContextMenu(wxContextMenuEvent& event);
    void OnHelp(const wxString& page);
    void OnCharHook(wxKeyEvent& event);

    void OnClose(wxCloseEvent& event);
    void OnCloseTimer();
    bool IsAnythingOpen() const;
    void CloseDialogs();

    MachineControl& engine;
    WindowEvents& events;
    HelpBook& help;
    const std::filesystem::path pathsFile;
    wxStaticText* remark;
    MainPanel* panel;
    TransferEndDialog* downloadEnd = nullptr;
    TransferEndDialog* uploadEnd = nullptr;
    ModalLoop modal;
    AppInterface& messages;
    MessageBoxes boxes;
    bool isAskingForLog = false;  // the user has switched the log on, and its dialog asks for the file
    bool isAskingToBreak = false; // a question asks whether the transfer is to be broken off
    bool isMenuOpen = false;
    bool isInputEnabled = true;
    EngineSnapshot shown;
    Caller caller;
    DownloadSettings settings; // the engine's, or newer while a change is on its way to the engine
    // Where the user has picked files by hand, for the next dialog.
    std::optional<KelText> sendFolder;
    std::optional<KelText> receiveFolder;
    std::optional<KelText> pickedExtension;
    wxTimer lookTimer;    // runs for a machine that another program serves
    wxTimer trafficTimer; // collects the lines of a short time for one repaint
    bool isClosing = false;
    wxTimer closeTimer;
    int closeTicksLeft = 25;
};

}
