#pragma once
// The dialog that shows a message box: caption, icon, headline, advice, text, time, the buttons of its style with the
// dictionary's names, and perhaps a check box that suppresses it from now on. Its text can be copied, whole. A long
// text scrolls. User-interface thread.

#include "dictionary/TextHolder.h"
#include "logging/LogText.h"
#include "messages/MessageReport.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

// Time and date in one text.
KelText MomentText(const LocalTimeText& time);

class CustomMessage : public wxDialog {
public:
    // F1 calls `showHelp`. `dictionary` names the buttons. Shows the present time.
    CustomMessage(wxWindow* parent, const MessageBoxText& box, std::function<void()> showHelp,
                  const TextHolder& dictionary = Dictionary());

    // Adds a button in front of those of the style. It calls `call` and leaves the box open.
    void AddButton(KelTextView label, std::function<void()> call);
    // How often the box came, and when last.
    void ShowCount(int count, const KelText& lastTime);
    // Called once when the user has answered and the dialog is hidden, for an owner that runs no loop.
    void WhenFinished(std::function<void()> call) { onFinished = std::move(call); }

    // The answer as the Windows message box numbers it, once the dialog is hidden. Without a button, the last button of
    // the style: the answer that changes least.
    int Answer() const { return answer; }
    // The user wants no more boxes of this number.
    bool IsSuppressed() const { return dontShowAgain != nullptr && dontShowAgain->IsChecked(); }
    // All that the box says, for the clipboard.
    KelText WholeText() const;

private:
    void AddMessage(wxSizer& column);
    void AddText(wxSizer& column);
    void AddButtons(wxSizer& column, const TextHolder& dictionary);
    void OnCharHook(wxKeyEvent& event);
    void Copy();
    void Finish(int newAnswer);

    const MessageBoxText box;
    wxStaticText* moment = nullptr;
    wxSizer* buttons = nullptr;
    wxTextCtrl* longText = nullptr; // null if the text is short
    wxCheckBox* dontShowAgain = nullptr;
    int answer;
    std::function<void()> onFinished;
};

}
