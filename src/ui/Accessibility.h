#pragma once
// What a screen reader is told about controls. User-interface thread.

#include "ui/Wx.h"

namespace tarvin {

enum class AccessibleRole { Pane, Picture, List };

// Names a control that has no caption of its own: for screen readers, and for wxWindow::FindWindowByName.
void NameControl(wxWindow& control, const wxString& name);

// For what the program paints itself. `name` is what the control is, and `value` what it says at the moment. Calls
// nothing of the system while both stay.
void SetAccessible(wxWindow& window, AccessibleRole role, const wxString& name, const wxString& value);

// For a painted bar. `percent` is 0 to 100. The window has no children of its own.
void SetAccessibleProgress(wxWindow& window, const wxString& name, int percent);

}
