#pragma once
// Shows and filters the history of transfers, the newest first. It reads on a thread of its own, so that a slow disk
// freezes no window. User-interface thread. Shown with ShowModal, or with Show by an owner that waits until it is
// hidden; it needs no answer.

#include "base/Result.h"
#include "history/HistoryReader.h"
#include "ui/BackgroundWork.h"
#include "ui/HistoryTable.h"

#include <functional>

#include <wx/timer.h>

namespace tarvin {

class HistoryDialog : public wxDialog {
public:
    // The newest rows that the table takes. An export takes all.
    static constexpr std::size_t mostRows = 10'000;

    struct Owner {
        std::function<void()> showHelp;
        // Opens the folder in the system's file manager.
        std::function<void(const std::filesystem::path&)> openFolder;
        // Shows a dialog of the system and returns its return code.
        std::function<int(wxDialog&)> runNative = [](wxDialog& dialog) { return dialog.ShowModal(); };
    };

    // Begins with the transfers of `machine` in the last 30 days.
    HistoryDialog(wxWindow* parent, std::filesystem::path database, KelText machine, Owner owner);

private:
    struct Reading {
        Result<std::vector<TransferRecord>> rows;
        std::vector<KelText> machines;
    };

    wxSizer* AddFilters();
    void AddLabel(wxSizer& row, KelTextView label);
    wxChoice* AddChoice(wxSizer& row, KelTextView label);
    void AddFilter(wxSizer& row, wxControl& control, KelTextView label);
    wxSizer* AddButtons();
    wxButton* AddButton(wxSizer& row, KelTextView label, void (HistoryDialog::*act)());
    HistoryFilter ChosenFilter() const;
    void Read();
    void ShowReading(Reading reading);
    void ShowMachines(const std::vector<KelText>& names);
    void ShowSelection();
    void OpenFolder();
    void Export();
    void Finish();
    void Say(const KelText& message);

    const std::filesystem::path database;
    const KelText machine;
    const Owner user;
    std::vector<KelText> machineNames; // the entries of the list after the first
    wxChoice* machines = nullptr;
    wxTextCtrl* number = nullptr;
    wxChoice* days = nullptr;
    wxChoice* outcome = nullptr;
    HistoryTable* table = nullptr;
    wxStaticText* message = nullptr;
    wxButton* openFolder = nullptr;
    wxButton* exportCsv = nullptr;
    BackgroundWork<Reading> reading;
    bool isReadingOutdated = false; // the filter has changed since it began
    BackgroundWork<KelText> exporting;
    wxTimer typingTimer; // runs while the user types a number
};

}
