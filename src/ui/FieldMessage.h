#pragma once
// A line below a field about its content, with a sign, words and perhaps a colour. Takes no room while it is empty.
// User-interface thread.

#include "ui/Wx.h"

#include <wx/statbmp.h>

namespace tarvin {

class FieldMessage {
public:
    enum class Kind { Problem, Note };

    // `parent` owns the controls of the line; the caller adds Sizer to a sizer, which then owns it.
    FieldMessage(wxWindow* parent, Kind kind);

    wxSizer* Sizer() const { return line; }
    // Shows the words; without words the line disappears. True if the window has to be laid out again.
    bool Say(const wxString& words);

private:
    void ChooseColour();

    Kind kind;
    wxSizer* line;
    wxStaticText* text;
};

}
