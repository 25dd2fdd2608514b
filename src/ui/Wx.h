#pragma once
// The one way to wxWidgets: without the macros of <windows.h> that would rename the program's own operations.

#include "framework/WindowsMacros.h"

#include <wx/wx.h>
