#pragma once
// The one page of a first start: asks what the first machine needs, shows what is missing, and makes the installation.
// User-interface thread. Shown with ShowModal, or with Show by an owner that waits until it is hidden and then asks
// GetReturnCode: wxID_OK when the installation is made, else wxID_CANCEL.

#include "port/PortReport.h"
#include "setup/MachineSetup.h"
#include "ui/BackgroundWork.h"
#include "ui/FieldMessage.h"
#include "ui/Wx.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace tarvin {

class StartDialog : public wxDialog {
public:
    // The installation will be made in `installation`. `languages` are those that the user may choose.
    StartDialog(std::filesystem::path installation, const std::vector<KelText>& languages);

    // The machine that was made.
    KelText MachineName() const;

private:
    using Reports = std::vector<PortReport>;

    wxSizer* MakeFields(const std::vector<KelText>& languages);
    wxSizer* MakeButtons();
    wxTextCtrl* AddEdit(wxSizer& row, KelTextView label, const KelText& value);
    void AddLabel(wxSizer& grid, KelTextView label);
    wxTextCtrl* AddFolder(wxSizer& grid, KelTextView label, KelTextView browseLabel, const KelText& value);
    void Look();
    void OnLooked(Reports found);
    void ShowMissing();
    void Browse(wxTextCtrl& folder);
    void Create();
    void Finish(int result);
    void Complain(wxWindow& field, KelTextView reason);
    MachineWish Wish() const;
    const PortReport* ChosenPort() const;

    const std::filesystem::path installation;
    Reports reports;
    BackgroundWork<Reports> looking;
    wxTextCtrl* machine = nullptr;
    wxChoice* ports = nullptr;
    wxButton* lookAgain = nullptr;
    wxChoice* speed = nullptr;
    wxTextCtrl* upload = nullptr;
    wxTextCtrl* download = nullptr;
    wxChoice* language = nullptr;
    wxTextCtrl* missing = nullptr;
    wxButton* create = nullptr;
    std::unique_ptr<FieldMessage> message;
};

}
