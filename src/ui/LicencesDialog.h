#pragma once
// The licences of the parts of others that the program contains, in a window that scrolls. User-interface thread.

#include "ui/Wx.h"

#include <functional>
#include <string_view>

namespace tarvin {

// In UTF-8.
extern const std::string_view licenceText;

class LicencesDialog : public wxDialog {
public:
    // F1 calls `showHelp`. Hides itself when the user closes it.
    LicencesDialog(wxWindow* parent, std::function<void()> showHelp);
};

}
