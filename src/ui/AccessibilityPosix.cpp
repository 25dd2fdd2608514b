#include "ui/Accessibility.h"

#include <gtk/gtk.h>

namespace tarvin {

namespace {

AtkRole RoleOf(AccessibleRole role) {
    switch (role) {
    case AccessibleRole::Picture:
        return ATK_ROLE_IMAGE;
    case AccessibleRole::ProgressBar:
        return ATK_ROLE_PROGRESS_BAR;
    case AccessibleRole::List:
        return ATK_ROLE_LIST;
    case AccessibleRole::Pane:
        break;
    }
    return ATK_ROLE_PANEL;
}

}

void SetAccessible(wxWindow& window, AccessibleRole role, const wxString& name, const wxString& value) {
    AtkObject* accessible = gtk_widget_get_accessible(window.GetHandle());
    if (accessible == nullptr)
        return;
    atk_object_set_role(accessible, RoleOf(role));
    // Setting a text tells every screen reader, so an unchanged one is left alone.
    const auto set = [accessible](auto* present, const wxString& text, auto* setter) {
        const char* const old = present(accessible);
        if (old == nullptr || text != wxString::FromUTF8(old))
            setter(accessible, text.utf8_str());
    };
    set(atk_object_get_name, name, atk_object_set_name);
    set(atk_object_get_description, value, atk_object_set_description);
}

}
