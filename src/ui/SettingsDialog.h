#pragma once
// The dialog "Download Settings", in which the user changes the settings of the machine. User-interface thread. Shown
// with ShowModal, or with Show by an owner that waits until it is hidden and then asks GetReturnCode: wxID_OK or
// wxID_CANCEL.

#include "port/PortNames.h"
#include "ui/SettingsForm.h"

#include <functional>
#include <vector>

class wxBookCtrlBase;

namespace tarvin {

class SettingsDialog : public wxDialog {
public:
    struct Owner {
        // Takes over a folder or a file that the user has browsed for: at once, and even if the user then cancels.
        std::function<void(const DownloadSettings&)> writeThrough;
        std::function<void()> showHelp;
        // Shows a dialog of the system and returns its return code.
        std::function<int(wxDialog&)> runNative = [](wxDialog& dialog) { return dialog.ShowModal(); };
        // Shows the messages again that the user has suppressed: at once. False if that lasts until the program closes.
        std::function<bool()> showAllMessages = [] { return false; };
    };

    // The user chooses one of `ports`. Settings without a control stay as they are.
    SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner);

    // The settings as the controls show them. Texts that the user has left alone are as given, to the code unit.
    DownloadSettings Settings() const { return form.Settings(); }

private:
    wxSizer* MakeButtons();
    void BrowseForFolder(TextField& field);
    void BrowseForLogFile(TextField& field);
    void TakeBrowsed(TextField& field, const KelText& text);
    void Confirm();
    void ShowField(wxWindow& control);
    void FitHeight();
    void Finish(int result);

    Owner user;
    SettingsForm form;
    wxBookCtrlBase* pages = nullptr;
};

}
