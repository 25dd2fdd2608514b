#pragma once
// How far a transfer has come, in bytes: a bar that can be read across the room. User-interface thread.

#include "ui/Wx.h"

#include <cstdint>

namespace tarvin {

class ProgressBar : public wxWindow {
public:
    ProgressBar(wxWindow* parent, const wxSize& size);

    // Repaints only if the bar's picture changes. A range of 0 or less shows an empty bar; a position outside the range
    // an empty or a full one.
    void SetProgress(std::int64_t position, std::int64_t range);
    // What is filled, 0 to 1.
    double Filled() const { return filled; }

    bool AcceptsFocus() const override { return false; }

private:
    void OnPaint(wxPaintEvent&);
    int FilledWidth() const;

    double filled = 0;
    int paintedWidth = 0;
    int percent = -1; // of the tip
};

}
