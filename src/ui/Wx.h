#pragma once
// wxWidgets for all other files of this folder, without the macros of <windows.h> that rename our operations, and the
// conversion of our texts for it.

#include "base/KelText.h"

#include <wx/wx.h>

#undef CreateFile
#undef DeleteFile
#undef GetMessage
#undef MessageBox
#undef ReportEvent
#undef SendMessage

namespace tarvin {

// Any thread.
wxString ToWx(KelTextView text);
KelText FromWx(const wxString& text);

// The folder in which the user's own choices about windows are kept. It need not exist. User-interface thread.
std::filesystem::path UserFolder();

// Puts the text on the clipboard, with the line ends of the system. User-interface thread.
void CopyToClipboard(const wxString& text);

// The English name of the system's language, such as "German": the dictionary knows its languages by these names. Empty
// if it is unknown. User-interface thread.
KelText SystemLanguage();

// The text for a label: an ampersand is shown and marks no key.
wxString ToLabel(KelTextView text);

}
