#pragma once
// Controls that change only when the user means it. User-interface thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

// The mouse wheel no longer changes the value of a closed list or a spin.
void IgnoreWheel(wxWindow& control);

// Enter calls `confirm` in place of opening the closed list.
void ConfirmWithEnter(wxChoice& list, std::function<void()> confirm);

}
