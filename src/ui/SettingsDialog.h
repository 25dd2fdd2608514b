#pragma once
// "Download Settings": where a user changes the settings of the machine. Knows neither where they are kept nor the
// link. User-interface thread. Shown with ShowModal, or with Show by an owner who waits until it is hidden and asks
// GetReturnCode: wxID_OK or wxID_CANCEL.

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
        // Takes effect at once and whatever becomes of the dialog: a folder or a file that the user has browsed for.
        std::function<void(const DownloadSettings&)> writeThrough;
        std::function<void()> showHelp;
        // Shows a dialog of the system and gives its return code.
        std::function<int(wxDialog&)> runNative = [](wxDialog& dialog) { return dialog.ShowModal(); };
    };

    // `ports` are those that the user may choose from. What the dialog does not show of the settings stays as it is.
    SettingsDialog(wxWindow* parent, DownloadSettings settings, std::vector<FoundPort> ports, Owner owner);

    // What the controls say. What the user has left alone is as it was given, to the code unit.
    DownloadSettings Settings() const;

private:
    using Text = KelText DownloadSettings::*;
    using Number = std::int32_t DownloadSettings::*;
    using Byte = std::uint8_t DownloadSettings::*;

    wxStaticBoxSizer* AddLineGroup();
    wxStaticBoxSizer* AddDelayGroup();
    wxStaticBoxSizer* AddFilesGroup();
    wxStaticBoxSizer* AddLogGroup();
    wxStaticBoxSizer* AddCharacterGroup();
    wxSizer* AddButtons();
    void AddPortList(wxWindow* box, wxFlexGridSizer& grid);
    wxChoice* AddChoice(wxWindow* box, wxFlexGridSizer& grid, const wxString& label, std::vector<KelText> entries,
                        Text setting);
    void AddSpin(wxWindow* box, wxFlexGridSizer& grid, const wxString& label, int highest, Number setting);
    wxCheckBox* AddCheckBox(wxWindow* box, const wxString& label, Number setting);
    void AddCharacter(wxWindow* box, wxFlexGridSizer& grid, const wxString& label, const wxString& listName,
                      Number isSent, Byte setting);
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
    std::vector<std::function<void(DownloadSettings&)>> writers;
    std::vector<std::unique_ptr<TextField>> fields;
    // What the user has been told and may keep.
    std::vector<Text> told;
    wxChoice* portList = nullptr;
    wxStaticText* device = nullptr;
    std::unique_ptr<FieldMessage> stopBitsNote;
};

}
