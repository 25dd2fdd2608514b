#pragma once
// Puts the content of the board on the screen: sizes and places follow from the room. User-interface thread.

#include "ui/BoardContent.h"
#include "ui/Wx.h"

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include <wx/font.h>

namespace tarvin {

struct BoardRoom {
    wxSize size; // pixels
    int buttons; // pixels at the bottom that hold the buttons
    bool isDark;
    wxRegion exposed; // the parts to paint
};

// The fonts of a board. Finding the size of a font costs more than painting a row with it.
class BoardFonts {
public:
    // `window` gives the face.
    const wxFont& Font(const wxWindow& window, int pixels, bool isBold);
    // The face has changed.
    void Clear() { fonts.clear(); }

private:
    static constexpr std::size_t capacity = 100; // a window that is being resized uses many sizes
    std::map<std::pair<int, bool>, wxFont> fonts;
};

// Where the parts are that tell how long something lasts.
struct BoardPlaces {
    wxRect title;
    std::vector<wxRect> facts; // those that the room holds
};

// `window` gives the face and the scale. Measures and paints only what touches the exposed part.
BoardPlaces PaintBoard(wxDC& dc, const wxWindow& window, BoardFonts& fonts, const BoardContent& content,
                       const BoardRoom& room);

}
