#pragma once
// The dialog that shows a message box: caption, text, icon, the buttons of its style with the dictionary's names, and
// perhaps a check box that suppresses it from now on. User-interface thread.

#include "dictionary/TextHolder.h"
#include "messages/MessageReport.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class CustomMessage : public wxDialog {
public:
    // F1 calls `showHelp`. `dictionary` names the buttons.
    CustomMessage(wxWindow* parent, const MessageBoxText& box, std::function<void()> showHelp,
                  const TextHolder& dictionary = Dictionary());

    // The box came again, at `time`, while it was open: shows how often and when last.
    void CountAgain(const KelText& time);

    // The answer as the Windows message box numbers it, once the dialog is hidden. Without a button, the last button of
    // the style: the answer that changes least.
    int Answer() const { return answer; }
    // The user wants no more boxes of this number.
    bool IsSuppressed() const { return dontShowAgain != nullptr && dontShowAgain->IsChecked(); }

private:
    void AddMessage(wxSizer& column, const MessageBoxText& box);
    void AddButtons(wxSizer& column, unsigned style, const TextHolder& dictionary);
    void Finish(int newAnswer);

    wxCheckBox* dontShowAgain = nullptr;
    int answer;
    wxStaticText* repeats = nullptr;
    int count = 1;
};

}
