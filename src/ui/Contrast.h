#pragma once
// Colours that can be read on their ground. Any thread.

#include "ui/Wx.h"

namespace tarvin {

// What text needs at least.
inline constexpr double textContrast = 4.5;
// What signs, bars and frames need at least.
inline constexpr double signContrast = 3;

// The ratio of their luminances as the web's accessibility guidelines count it: 1 for equal colours, 21 for black on
// white.
double Contrast(const wxColour& one, const wxColour& other);

// Whether text on this ground has to be light.
bool IsDark(const wxColour& ground);

// The colour itself if it can be read on the ground, or else the nearest one towards black or white that can.
wxColour Readable(const wxColour& wanted, const wxColour& ground, double leastContrast = textContrast);

// `share` of the colour over the ground, from 0 to 1.
wxColour Mixed(const wxColour& colour, const wxColour& ground, double share);

}
