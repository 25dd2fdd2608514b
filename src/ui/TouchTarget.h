#pragma once
// Controls that are large enough for a hurried finger, also in a glove. User-interface thread.

#include "ui/Wx.h"

#include <algorithm>

namespace tarvin {

inline constexpr int leastTarget = 32; // DIP

// Raises the least height of the control where the system makes it lower. A least size that is set already stays.
inline void MakeTouchable(wxWindow& control) {
    const int height =
        std::max({control.FromDIP(leastTarget), control.GetBestSize().GetHeight(), control.GetMinSize().GetHeight()});
    control.SetMinSize(wxSize(control.GetMinSize().GetWidth(), height));
}

}
