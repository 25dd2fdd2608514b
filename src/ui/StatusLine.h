#pragma once
// The status line: one text as large as its box allows, with a sign for who only wants to know whether it goes well.
// Knows nothing of states. User-interface thread.

#include "ui/Outlook.h"
#include "ui/Wx.h"

#include <wx/statbmp.h>

namespace tarvin {

class StatusLine : public wxPanel {
public:
    StatusLine(wxWindow* parent, const wxSize& size);

    // Repaints only if that changes anything. A text that is too long for the box loses its middle there; the whole of
    // it is the tooltip.
    void ShowStatus(const wxString& text, Outlook newOutlook);
    wxString Text() const { return shownText; }
    Outlook ShownOutlook() const { return outlook; }

private:
    void ShowSign();
    void FitText();

    wxStaticBitmap* sign;
    wxStaticText* label;
    wxString shownText;
    wxString fittedText;
    int fittedWidth = 0;
    Outlook outlook = Outlook::Idle;
};

}
