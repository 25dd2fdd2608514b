#pragma once
// The colours of the board's states, for light and dark themes. Every text on its ground has a contrast of at least
// 4.5:1, and every sign of at least 3:1. User-interface thread.

#include "ui/BoardContent.h"
#include "ui/Wx.h"

#include <cstdint>

namespace tarvin {

// 0xRRGGBB.
using Rgb = std::uint32_t;

struct BoardColours {
    Rgb edge; // the band at the edge, the share and the bar
    Rgb ground;
    Rgb text;
    Rgb faint; // captions of facts, and the last transfers
    Rgb track; // what is left of the bar
};

const BoardColours& ColoursOf(BoardState state, bool isDark);
// The sign of a transfer in the list of the last ones.
Rgb SignColour(TransferOutcome outcome, bool isDark);

wxColour ToColour(Rgb rgb);

}
