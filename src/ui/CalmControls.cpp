#include "ui/CalmControls.h"

namespace tarvin {

// A handler that does not skip the event keeps it from the system's control.
void IgnoreWheel(wxWindow& control) {
    control.Bind(wxEVT_MOUSEWHEEL, [](wxMouseEvent&) {});
}

}
