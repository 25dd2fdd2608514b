// Removes the macros of <windows.h> that would rename the program's own operations. To be included behind whatever has
// included that header, each time again.

#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MessageBox
#undef ReportEvent
#undef SendMessage
#undef Yield
