#pragma once
// Lists the files that the machine may ask for. The folder is read by a thread of its own, because it may lie on a
// server that takes its time. User-interface thread.

#include "transfer/NcFolder.h"
#include "ui/Wx.h"

#include <functional>
#include <memory>

namespace tarvin {

class NcFolderList;

class NcFolderDialog : public wxDialog {
public:
    NcFolderDialog(wxWindow* parent, KelText folder, KelText extension, std::function<void()> showHelp);
    ~NcFolderDialog() override;

private:
    struct Reading;

    void Read();
    void OnRead(const Reading& reading);
    void ShowMatches();

    const KelText folder;
    const KelText extension;
    wxTextCtrl* filter;
    NcFolderList* list;
    wxStaticText* note;
    std::vector<NcFolderEntry> entries;
    std::shared_ptr<Reading> reading; // the one under way or done last
};

}
