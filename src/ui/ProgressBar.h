#pragma once
// The progress of a transfer: a plain bar that can be read across the room. User-interface thread.

#include "ui/Wx.h"

#include <cstdint>

namespace tarvin {

class ProgressBar : public wxWindow {
public:
    ProgressBar(wxWindow* parent, const wxSize& size);

    // In bytes. A range of 0 or less shows an empty bar, a position outside the range an empty or a full one. Repaints
    // only if a pixel changes.
    void SetProgress(std::int64_t position, std::int64_t range);
    // The filled part, 0 to 1.
    double FilledPart() const { return filled; }

    bool AcceptsFocus() const override { return false; }

private:
    void OnPaint(wxPaintEvent&);
    int FilledWidth() const;

    double filled = 0;
    int paintedWidth = 0;
    int tipPercent = -1; // none yet
};

}
