#pragma once
// The main window: shows what the engine publishes and posts what the user asks for. Keeps nothing of the engine's but
// a copy of its settings. User-interface thread.

#include "engine/DownloadApp.h"
#include "messages/AppInterface.h"
#include "ui/EngineEvents.h"
#include "ui/HelpBook.h"
#include "ui/MainPanel.h"
#include "ui/ModalLoop.h"

#include <deque>
#include <filesystem>

#include <wx/timer.h>

namespace tarvin {

class DownloadEndDialog;
class TransferEndDialog;
class UploadEndDialog;

class MainWindow : public wxFrame {
public:
    // What the window stands on. All of it outlives the window.
    struct Parts {
        DownloadApp& engine;
        EngineEvents& events;
        HelpBook& help;
        // KEL.INI, in which ports have their names.
        std::filesystem::path pathsFile;
    };

    MainWindow(const Parts& parts, AppInterface& messageApp);
    ~MainWindow() override;

    // Shows a message box and waits for its answer, as the Windows message box numbers it. For the AppInterface.
    int ShowBox(const MessageBoxText& box);

    MainPanel& Panel() { return *panel; }
    ModalLoop& Dialogs() { return modal; }
    TransferEndDialog* ShownEndDialog() const;

private:
    void BindControls();
    void BindKeys();
    void AttachToEngine();
    void MakeEndDialogs();

    void ShowSnapshot();
    void ShowButtons(const EngineSnapshot& snapshot);
    void ShowLamps(const Lamps& lamps);
    void ShowTraffic();
    void ShowNextMessage();
    void EnableInput(bool isEnabled);

    void OnView();
    void OnLog();
    void OnHandshake();
    void OnChangeSettings();
    void OnSendFile();
    void OnReceiveFile();
    void OnContextMenu(wxContextMenuEvent& event);
    void OnHelp(const wxString& page);
    void OnCharHook(wxKeyEvent& event);
    void OnClose(wxCloseEvent& event);
    bool IsAnythingOpen() const;
    void CloseWhatIsOpen();
    void OnCloseTimer();

    DownloadApp& engine;
    EngineEvents& events;
    HelpBook& help;
    const std::filesystem::path pathsFile;
    MainPanel* panel;
    DownloadEndDialog* downloadEnd = nullptr;
    UploadEndDialog* uploadEnd = nullptr;
    ModalLoop modal;
    // Boxes of the engine wait here for their turn.
    AppInterface& messages;
    std::deque<MessageBoxText> waitingMessages;
    bool isMessageOpen = false;
    bool isClosing = false;
    bool isInputEnabled = true;
    EngineSnapshot shown;
    DownloadSettings settings;
    // Draws the traffic together that arrives within its period.
    wxTimer trafficTimer;
    // Ends the process if a menu or a dialog keeps it from ending for half a second.
    wxTimer closeTimer;
    int closeTicksLeft = 25;
    bool isMenuOpen = false;
};

}
