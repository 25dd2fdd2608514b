#pragma once
// The dialog "Download Settings", in which the user changes the settings of the machine. User-interface thread. Shown
// with ShowModal, or with Show by an owner that waits until it is hidden and then asks GetReturnCode: wxID_OK or
// wxID_CANCEL.

#include "port/PortNames.h"
#include "settings/SettingsCheck.h"
#include "ui/TextField.h"

#include <functional>
#include <memory>
#include <vector>

class wxStaticBoxSizer;

namespace tarvin {

class SettingsDialog : public wxDialog {
public:
    struct Owner {
        // Takes over a folder or a file that the user has browsed for: at once, and even if the user then cancels.
        std::function<void(const DownloadSettings&)> writeThrough;
        std::function<void()> showHelp;
        // Shows a dialog of the system and returns its return code.
        std::function<int(wxDialog&)> runNative = [](wxDialog& dialog) { return dialog.ShowModal(); };
    };

    // The user chooses one of `ports`. Settings without a control stay as they are.
    SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner);

    // The settings as the controls show them. Texts that the user has left alone are as given, to the code unit.
    DownloadSettings Settings() const;

private:
    using Text = KelText DownloadSettings::*;
    using Number = std::int32_t DownloadSettings::*;
    using Byte = std::uint8_t DownloadSettings::*;

    wxStaticBoxSizer* AddLineGroup();
    wxStaticBoxSizer* AddDelayGroup();
    wxStaticBoxSizer* AddCheckGroup();
    wxStaticBoxSizer* AddFilesGroup();
    wxStaticBoxSizer* AddLogGroup();
    wxStaticBoxSizer* AddCharacterGroup();
    wxSizer* AddButtons();
    void AddPortList(wxWindow* box, wxFlexGridSizer& grid);
    wxChoice* AddChoice(wxWindow* box, wxFlexGridSizer& grid, KelTextView label, std::vector<KelText> entries,
                        Text setting);
    void AddSpin(wxWindow* box, wxFlexGridSizer& grid, KelTextView label, int highest, Number setting);
    wxCheckBox* AddCheckBox(wxWindow* box, KelTextView label, Number setting);
    void AddCharacter(wxWindow* box, wxFlexGridSizer& grid, KelTextView label, KelTextView listName, Number isSent,
                      Byte setting);
    TextField& AddTextField(wxWindow* box, wxFlexGridSizer& grid, TextField::Description description,
                            void (SettingsDialog::*browse)(TextField&));

    void BrowseForFolder(TextField& field);
    void BrowseForLogFile(TextField& field);
    void TakeBrowsed(TextField& field, const KelText& text);
    void ShowDevice();
    void FieldChanged(TextField& field);
    void Confirm();
    void FitHeight();
    void Finish(int result);

    DownloadSettings present;
    const std::vector<FoundPort> foundPorts;
    Owner user;
    // Each takes the value of one control over.
    std::vector<std::function<void(DownloadSettings&)>> writers;
    std::vector<std::unique_ptr<TextField>> fields;
    // Fields with a problem that the user has seen and may keep.
    std::vector<Text> told;
    wxChoice* portList = nullptr;
    wxStaticText* device = nullptr;
    std::unique_ptr<FieldMessage> stopBitsNote;
};

}
