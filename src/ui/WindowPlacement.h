#pragma once
// The place of a machine's window on the screen. Kept with the user's own configuration, because several users may
// share the settings of a machine. User-interface thread.

#include "base/KelText.h"
#include "ui/Wx.h"

namespace tarvin {

// Puts the window at its saved place. False if there is none, or if a user could not reach the window there; the window
// then stays where it is.
bool RestorePlacement(wxTopLevelWindow& window, KelTextView machineName);

// Places a window that has no saved place: in the middle of the screen, or beside it where the window of another
// machine has its saved place. Saves the place.
void PlaceFirst(wxTopLevelWindow& window, KelTextView machineName);

// A failure is not told: the window opens in the middle of the screen the next time.
void SavePlacement(const wxTopLevelWindow& window, KelTextView machineName);

// Shows the window in front of the others and gives it the keyboard. Where the system keeps the keyboard with another
// program, the window calls the user in the task bar instead.
void BringToFront(wxTopLevelWindow& window);

}
