#pragma once
// Asks under which number the machine will ask for a file. User-interface thread.

#include "ui/FieldMessage.h"

#include <functional>
#include <memory>

namespace tarvin {

class NumberDialog : public wxDialog {
public:
    // Suggests `number`. F1 calls `showHelp`. wxID_OK with a number that a file can have, or wxID_CANCEL.
    NumberDialog(wxWindow* parent, KelTextView fileName, KelTextView number, std::function<void()> showHelp);

    // As the machine asks for it: without leading zeros.
    KelText Number() const;

private:
    void Confirm();
    void Finish(int result);

    wxTextCtrl* edit;
    std::unique_ptr<FieldMessage> problem;
};

// The number that a file's name suggests: its name without the extension, if it can be a number.
KelText SuggestedNumber(KelTextView fileName);

}
