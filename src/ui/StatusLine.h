#pragma once
// The status line: one text as large as its box allows, with a sign that can be read across the room: is it going well?
// User-interface thread.

#include "engine/EngineEvents.h"
#include "ui/PassivePanel.h"

#include <wx/statbmp.h>

namespace tarvin {

enum class Outlook { Idle, Busy, Good, Bad };

// The outlook of link and transfer. Any thread.
Outlook OutlookOf(const EngineSnapshot& snapshot);

// The status, and what stands beside it. Any thread.
KelText StatusText(const EngineSnapshot& snapshot);

class StatusLine : public PassivePanel {
public:
    StatusLine(wxWindow* parent, const wxSize& size);

    // Leaves out the middle of a folder if the text is too long for the box; the tip has the whole text. Repaints only
    // after a change.
    void ShowStatus(const wxString& text, Outlook newOutlook);
    wxString Text() const { return shownText; }
    Outlook ShownOutlook() const { return outlook; }

private:
    void ShowSign();
    void FitText();

    wxStaticBitmap* sign;
    wxStaticText* label;
    wxString shownText;
    // The text and the width that the font was last chosen for.
    wxString fittedText;
    int fittedWidth = 0;
    Outlook outlook = Outlook::Idle;
};

}
