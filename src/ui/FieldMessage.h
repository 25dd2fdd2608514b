#pragma once
// A line below a field that says what is wrong with it, by a sign, words and colour. Takes no room while there is
// nothing to say. User-interface thread.

#include "ui/Wx.h"

#include <wx/statbmp.h>

namespace tarvin {

class FieldMessage {
public:
    enum class Kind { Problem, Note };

    // The line's controls belong to `parent`, its sizer to whoever adds it.
    FieldMessage(wxWindow* parent, Kind messageKind);

    wxSizer* Sizer() const { return line; }
    // An empty text ends the message. True if the line came, went or changed, so that the window has to be laid out.
    bool Say(const wxString& words);

private:
    void ChooseColour();

    Kind kind;
    wxSizer* line;
    wxStaticText* text;
};

}
