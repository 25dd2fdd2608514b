#include "ui/Accessibility.h"

#include <gtk/gtk.h>
#include <wx/gauge.h>

namespace tarvin {

namespace {

AtkRole RoleOf(AccessibleRole role) {
    switch (role) {
    case AccessibleRole::Picture:
        return ATK_ROLE_IMAGE;
    case AccessibleRole::List:
        return ATK_ROLE_LIST;
    case AccessibleRole::Pane:
        break;
    }
    return ATK_ROLE_PANEL;
}

// Setting a text tells every screen reader, so an unchanged one is left alone.
void SetName(AtkObject* accessible, const wxString& name) {
    const char* const old = atk_object_get_name(accessible);
    if (old == nullptr || name != wxString::FromUTF8(old))
        atk_object_set_name(accessible, name.utf8_str());
}

// Text fields of several lines and tables lie in a widget that scrolls them, and the inner one has the keyboard.
void NameWidget(GtkWidget* widget, const wxString& name) {
    SetName(gtk_widget_get_accessible(widget), name);
    if (!GTK_IS_SCROLLED_WINDOW(widget))
        return;
    if (GtkWidget* const inner = gtk_bin_get_child(GTK_BIN(widget)))
        SetName(gtk_widget_get_accessible(inner), name);
}

}

void NameControl(wxWindow& control, const wxString& name) {
    control.SetName(name);
    NameWidget(control.GetHandle(), name);
}

void SetAccessible(wxWindow& window, AccessibleRole role, const wxString& name, const wxString& value) {
    NameWidget(window.GetHandle(), name);
    AtkObject* const accessible = gtk_widget_get_accessible(window.GetHandle());
    atk_object_set_role(accessible, RoleOf(role));
    const char* const old = atk_object_get_description(accessible);
    if (old == nullptr || value != wxString::FromUTF8(old))
        atk_object_set_description(accessible, value.utf8_str());
}

// The toolkit gives a value to its own bars only. So one of them lies on the painted bar, and lets all of it through.
void SetAccessibleProgress(wxWindow& window, const wxString& name, int percent) {
    wxGauge* gauge = nullptr;
    if (!window.GetChildren().empty()) {
        gauge = static_cast<wxGauge*>(window.GetChildren().front());
    } else {
        gauge = new wxGauge(&window, wxID_ANY, 100);
        gtk_widget_set_opacity(gauge->GetHandle(), 0);
        NameControl(*gauge, name);
        window.Bind(wxEVT_SIZE, [&window, gauge](wxSizeEvent& event) {
            event.Skip();
            gauge->SetSize(window.GetClientSize());
        });
    }
    gauge->SetValue(percent);
}

}
