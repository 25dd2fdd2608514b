#pragma once
// The bar in which the user types a text to find. User-interface thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class FindBar : public wxPanel {
public:
    struct Owner {
        // The text has changed.
        std::function<void()> typed;
        // The user wants the next place, or the one before.
        std::function<void(bool isForward)> find;
        std::function<void()> close;
    };

    FindBar(wxWindow* parent, Owner owner);

    KelText Wanted() const;
    // Gives the keyboard to the field and selects its text, for the user to type over.
    void TakeFocus();
    // What came of the last search; empty if there is nothing to say.
    void ShowResult(const wxString& result);
    wxString Result() const { return result->GetLabel(); }

private:
    wxButton* AddButton(KelTextView caption, std::function<void()> action);
    void OnCharHook(wxKeyEvent& event);

    const Owner owner;
    wxTextCtrl* field;
    wxStaticText* result;
};

}
