#pragma once
// Patterns for the filters of the system's file dialogs. Any thread.

#include "ui/Wx.h"

namespace tarvin {

// The pattern for all files with this extension, in any case: ".NC" is found by "nc". The extension holds no "|" and no
// ";", which divide filters and patterns.
wxString PatternFor(const wxString& extension);

}
