#pragma once
// F1 in a top-level window, whatever in it has the keyboard. User-interface thread.

#include "ui/Wx.h"

#include <functional>

namespace tarvin {

void BindHelpKey(wxTopLevelWindow& window, std::function<void()> showHelp);

}
