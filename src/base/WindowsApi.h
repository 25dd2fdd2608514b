#pragma once
// The one way to <windows.h>: without the macros that would rename the program's own operations.
// For sources named *Windows.cpp only.

#include <windows.h>

#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MessageBox
#undef ReportEvent
#undef SendMessage
#undef Yield
