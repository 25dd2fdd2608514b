#include "ui/Accessibility.h"

namespace tarvin {

// Windows derives the role from the kind of control, and reads the text of a window as its name.
void SetAccessible(wxWindow& window, AccessibleRole, const wxString& name, const wxString& value) {
    const wxString text = value.empty() ? name : name + ": " + value;
    if (window.GetLabel() != text)
        window.SetLabel(text);
}

}
