#pragma once
// A line below a field about its content, with a sign, words and perhaps a colour. User-interface thread.

#include "ui/Wx.h"

#include <wx/statbmp.h>

namespace tarvin {

class FieldMessage {
public:
    enum class Kind { Problem, Note };
    // The room of a message. Without reserved lines it takes none while it is empty, and the fields below it move.
    struct Room {
        int reservedLines = 0;
        int widestLine = 160; // in dialog units
    };

    // `parent` owns the controls of the line; the caller adds Sizer to a sizer, which then owns it.
    FieldMessage(wxWindow* parent, Kind kind) : FieldMessage(parent, kind, Room()) {}
    FieldMessage(wxWindow* parent, Kind kind, const Room& room);

    wxSizer* Sizer() const { return line; }
    // Shows the words; without words the line disappears. True if the window has to be laid out again.
    bool Say(const wxString& words);
    // The same with another sign and colour.
    bool Say(const wxString& words, Kind newKind);

private:
    void ShowKind();

    Kind kind;
    const Room room;
    wxSizer* line;
    wxStaticBitmap* sign;
    wxStaticText* text;
};

}
