#pragma once
// The page that leads a new user to a working line: port, speed, folder and extension, with what is missing and how to
// mend it. A thread of its own looks at the ports, because a device may keep it waiting. User-interface thread.

#include "engine/EngineSnapshot.h"
#include "port/PortReport.h"
#include "settings/DownloadSettings.h"
#include "ui/BackgroundWork.h"
#include "ui/FieldMessage.h"
#include "ui/Wx.h"

#include <functional>
#include <memory>
#include <vector>

#include <wx/dirdlg.h>
#include <wx/scrolwin.h>
#include <wx/timer.h>

namespace tarvin {

// Whether the page has something to lead to: the port has never been open, and no transfer is known.
bool IsFirstUse(const EngineSnapshot& snapshot);

class FirstUsePage : public wxScrolledWindow {
public:
    struct Owner {
        std::function<DownloadSettings()> settings;
        // Takes the settings over and opens the port.
        std::function<void(const DownloadSettings&)> apply;
        std::function<int(wxDialog&)> runNative;
        // KEL.INI, which names the ports.
        std::filesystem::path pathsFile;
    };

    explicit FirstUsePage(wxWindow* parent);

    // Before the page is shown for the first time.
    void SetOwner(Owner newOwner) { owner = std::move(newOwner); }
    // Fills the page from the settings and looks at the ports, or ends all that. The page's button is the default
    // button of the window meanwhile.
    bool Show(bool isShown = true) override;
    void ShowSnapshot(const EngineSnapshot& snapshot);
    // Another dialog, or the engine, has changed settings. What the user has entered on the page stays, except where
    // the same setting has changed.
    void ShowSettings(const DownloadSettings& settings);
    // Other dialogs that change settings switch the page's button off.
    void EnableInput(bool isEnabled);

private:
    using Reports = std::vector<PortReport>;

    wxSizer* PortRow();
    wxSizer* ValueGrid();
    wxButton* AddButton(KelTextView label);
    wxTextCtrl* AddEdit(KelTextView name);
    wxStaticText* AddText();
    void Fill();
    void ShowSpeed(const KelText& baudRate);
    void Look();
    void OnLooked(Reports found);
    void ShowAdvice();
    void ShowExample();
    void OnEdited();
    void Browse();
    void UseAndTest();
    void SayResult();
    void SetText(wxStaticText& control, const wxString& words);
    void LayOut();
    // The settings as the controls show them.
    DownloadSettings Wanted() const;
    const PortReport* Chosen() const;

    Owner owner;
    DownloadSettings given;
    Reports reports;
    BackgroundWork<Reports> looking;
    KelText chosenName;
    KelText openingPort;        // the port that the user tries; empty before that
    bool isProblemTold = false; // the user has seen the problems of the fields
    bool isConversation = true;
    wxButton* useAndTest = nullptr;
    wxWindow* previousDefault = nullptr;
    int wrappedWidth = 0;
    wxTimer resultTimer;
    wxListBox* ports = nullptr;
    wxButton* lookAgain = nullptr;
    wxStaticText* advice = nullptr;
    wxTextCtrl* command = nullptr;
    wxChoice* speed = nullptr;
    wxTextCtrl* extension = nullptr;
    wxTextCtrl* folder = nullptr;
    wxStaticText* example = nullptr;
    std::unique_ptr<FieldMessage> message;
};

}
