#pragma once
// The program's message dialog: a text with a caption, an icon, the buttons of its style named by the dictionary, and a
// box to have it not shown again. User-interface thread.

#include "dictionary/TextHolder.h"
#include "messages/MessageReport.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class CustomMessage : public wxDialog {
public:
    // `showHelp` is for F1.
    CustomMessage(wxWindow* parent, const MessageBoxText& box, std::function<void()> showHelp,
                  const TextHolder& texts = Dictionary());

    // As the Windows message box numbers it. Good once the dialog has been hidden; closing it by other means than its
    // buttons is the answer that changes least.
    int Answer() const { return answer; }
    bool IsNotToBeShownAgain() const { return dontShowAgain != nullptr && dontShowAgain->IsChecked(); }

private:
    void AddMessage(wxSizer& column, const MessageBoxText& box);
    void AddButtons(wxSizer& column, unsigned style, const TextHolder& texts);
    void Finish(int newAnswer);

    wxCheckBox* dontShowAgain = nullptr;
    int answer;
};

}
