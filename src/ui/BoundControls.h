#pragma once
// Controls that show texts of the settings. A text that the user leaves alone comes back to the code unit, even if a
// control cannot show it. User-interface thread.

#include "base/KelText.h"
#include "ui/Wx.h"

#include <vector>

namespace tarvin {

// A list of texts. Adds `original` if it is none of them.
class BoundChoice {
public:
    BoundChoice(wxChoice* choice, std::vector<KelText> entries, const KelText& original);

    KelText Value() const;

private:
    wxChoice* choice;
    std::vector<KelText> entries;
    KelText original;
};

class BoundEdit {
public:
    BoundEdit(wxTextCtrl* edit, const KelText& original) : edit(edit) { Show(original); }

    void Show(const KelText& text);
    // `isNew` is false while the control shows the text of the last Show.
    struct Content {
        KelText text;
        bool isNew;
    };
    Content Value() const;

private:
    wxTextCtrl* edit;
    KelText original;
    wxString shown;
};

}
