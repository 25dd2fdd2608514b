#pragma once
// Controls that stand for texts of the settings. What a user leaves alone comes back exactly as it was given, even if
// no control can show it. User-interface thread.

#include "base/KelText.h"
#include "ui/Wx.h"

#include <vector>

namespace tarvin {

// A list of texts, to which the given one is added if it is none of them.
class BoundChoice {
public:
    BoundChoice(wxChoice* list, std::vector<KelText> texts, const KelText& given);

    KelText Value() const;

private:
    wxChoice* choice;
    std::vector<KelText> entries;
    KelText original;
};

class BoundEdit {
public:
    BoundEdit(wxTextCtrl* control, const KelText& given) : edit(control) { Show(given); }

    void Show(const KelText& text);
    // `isNew` is false where it is what was shown last.
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
