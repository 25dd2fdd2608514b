#pragma once
// Where the user wants a machine's window: kept with the user's own configuration, because several users may share one
// machine's settings. User-interface thread.

#include "base/KelText.h"
#include "ui/Wx.h"

namespace tarvin {

// Puts the window where it was when it was saved, as far as that is on a screen that is there; else leaves it alone and
// returns false.
bool RestorePlacement(wxTopLevelWindow& window, KelTextView machineName);

// One that cannot be saved is not worth a message.
void SavePlacement(const wxTopLevelWindow& window, KelTextView machineName);

}
