#pragma once
// Stands beside the main window while a file is received by hand. Its end is not known from what arrives; so the user
// says when it is complete. User-interface thread.

#include "ui/TransferEndDialog.h"

#include <utility>

namespace tarvin {

class UploadEndDialog : public TransferEndDialog {
public:
    UploadEndDialog(wxWindow* owner, std::function<void()> showHelp, std::function<void()> complete,
                    std::function<void()> cancel)
        : TransferEndDialog(owner, "Receiving NC File", "Upload End", std::move(showHelp)) {
        AddButton(wxID_CANCEL, "C&ancel", false, std::move(cancel));
        AddButton(wxID_OK, "&Complete", true, std::move(complete));
        Arrange();
    }
};

}
