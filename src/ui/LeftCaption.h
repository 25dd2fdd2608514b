#pragma once
// How a check box comes to have its caption on the left, with the caption part of what can be clicked. Systems differ
// in which of their ways does that without turning the tick around. User-interface thread.

#include "ui/Wx.h"

namespace tarvin {

// The style that the box is made with.
long LeftCaptionStyle();
// What is left to do once it is made.
void PutCaptionLeft(wxCheckBox& box);

}
