#pragma once
// What a screen reader is told about a control that paints itself. User-interface thread.

#include "ui/Wx.h"

namespace tarvin {

enum class AccessibleRole { Pane, Picture, ProgressBar, List };

// `name` is what the control is, and `value` what it says at the moment. Calls nothing of the system while both stay.
void SetAccessible(wxWindow& window, AccessibleRole role, const wxString& name, const wxString& value);

}
