#pragma once
// Includes <windows.h> without the macros that would rename the program's own operations. Every source named
// *Windows.cpp includes this header in its place.

#include <windows.h>

#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MessageBox
#undef ReportEvent
#undef SendMessage
#undef Yield
