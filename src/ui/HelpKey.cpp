#include "ui/HelpKey.h"

#include <utility>

namespace tarvin {

void BindHelpKey(wxTopLevelWindow& window, std::function<void()> showHelp) {
    window.Bind(wxEVT_CHAR_HOOK, [show = std::move(showHelp)](wxKeyEvent& event) {
        if (event.GetKeyCode() == WXK_F1)
            show();
        else
            event.Skip();
    });
}

}
