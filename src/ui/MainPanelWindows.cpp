#include "ui/MainPanel.h"

namespace tarvin {

wxCheckBox* MakeLeftCaptionBox(wxWindow* parent, const wxString& caption) {
    // The right-to-left layout would mirror the tick.
    return new wxCheckBox(parent, wxID_ANY, caption, wxDefaultPosition, wxDefaultSize, wxALIGN_RIGHT);
}

}
