#include "ui/CalmControls.h"

namespace tarvin {

// On this system Enter goes to the default button of the dialog, and to the list only while that is open.
void ConfirmWithEnter(wxChoice&, std::function<void()>) {}

}
