#pragma once
// The one way to wxWidgets: without the macros of <windows.h> that would rename the program's own operations.

#include <wx/wx.h>

#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MessageBox
#undef ReportEvent
#undef SendMessage
