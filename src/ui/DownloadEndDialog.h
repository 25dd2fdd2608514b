#pragma once
// Stands beside the main window while a file is sent by hand. User-interface thread.

#include "ui/TransferEndDialog.h"

#include <utility>

namespace tarvin {

class DownloadEndDialog : public TransferEndDialog {
public:
    DownloadEndDialog(wxWindow* owner, std::function<void()> showHelp, std::function<void()> cancel)
        : TransferEndDialog(owner, "Sending NC File", "Download End", std::move(showHelp)) {
        AddButton(wxID_CANCEL, "&Cancel", true, std::move(cancel));
        Arrange();
    }
};

}
