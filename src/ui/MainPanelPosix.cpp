#include "ui/MainPanel.h"

namespace tarvin {

wxCheckBox* MakeLeftCaptionBox(wxWindow* parent, const wxString& caption) {
    auto* box = new wxCheckBox(parent, wxID_ANY, caption);
    // wxALIGN_RIGHT would make the caption a label of its own, which ignores clicks.
    box->SetLayoutDirection(wxLayout_RightToLeft);
    return box;
}

}
