#pragma once
// Lists the files that the machine may ask for. The folder is read by a thread of its own, because it may lie on a
// server that takes its time. User-interface thread.

#include "transfer/NcFolder.h"
#include "ui/BackgroundWork.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class NcFolderList;

class NcFolderDialog : public wxDialog {
public:
    NcFolderDialog(wxWindow* parent, KelText folder, KelText extension, std::function<void()> showHelp);

private:
    using Entries = Result<std::vector<NcFolderEntry>>;

    void Read();
    void OnRead(Entries found);
    void ShowMatches();

    const KelText folder;
    const KelText extension;
    wxTextCtrl* filter;
    NcFolderList* list;
    wxStaticText* note;
    std::vector<NcFolderEntry> entries;
    BackgroundWork<Entries> reading;
};

}
