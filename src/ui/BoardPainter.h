#pragma once
// Puts the content of the board on the screen: sizes and places follow from the room. User-interface thread.

#include "ui/BoardContent.h"
#include "ui/Wx.h"

namespace tarvin {

struct BoardRoom {
    wxSize size; // pixels
    int buttons; // pixels at the bottom that hold the buttons
    bool isDark;
};

// `window` gives the font and the scale.
void PaintBoard(wxDC& dc, const wxWindow& window, const BoardContent& content, const BoardRoom& room);

}
