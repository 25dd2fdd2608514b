#pragma once
// The program's texts for wxWidgets and back. Pure, any thread.

#include "base/KelText.h"
#include "ui/Wx.h"

namespace tarvin {

wxString ToWx(KelTextView text);
KelText FromWx(const wxString& text);

// The text as a label shows it: an ampersand is itself and no mnemonic.
wxString ToLabel(KelTextView text);

}
