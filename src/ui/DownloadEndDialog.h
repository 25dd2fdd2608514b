#pragma once
// Stands beside the main window while a file is sent by hand. User-interface thread.

#include "ui/TransferEndDialog.h"

namespace tarvin {

class DownloadEndDialog : public TransferEndDialog {
public:
    DownloadEndDialog(wxWindow* owner, std::function<void()> cancel)
        : TransferEndDialog(owner, "Sending NC File", "Download End") {
        AddButton(wxID_CANCEL, "&Cancel", true, std::move(cancel));
        Arrange();
    }
};

}
