#include "ui/CalmControls.h"

#include <utility>

#include <gtk/gtk.h>

namespace tarvin {

namespace {

// Owned by the list, as are the parts that use it.
struct EnterAction : wxClientData {
    EnterAction(wxChoice& list, std::function<void()> confirm) : list(list), confirm(std::move(confirm)) {}
    wxChoice& list;
    const std::function<void()> confirm;
};

gboolean OnKey(GtkWidget*, GdkEventKey* event, gpointer data) {
    if (event->keyval != GDK_KEY_Return && event->keyval != GDK_KEY_KP_Enter)
        return FALSE;
    // Later: the dialog may go, and with it the list that is still handling its key.
    auto& action = *static_cast<EnterAction*>(data);
    action.list.CallAfter(action.confirm);
    return TRUE;
}

void ConnectParts(GtkWidget* widget, gpointer action) {
    g_signal_connect(widget, "key-press-event", G_CALLBACK(OnKey), action);
    if (GTK_IS_CONTAINER(widget))
        gtk_container_forall(GTK_CONTAINER(widget), ConnectParts, action);
}

}

// The toolkit's list has a button inside, which takes Enter before wxWidgets sees the key. The open list is a window of
// its own, so its keys do not come here.
void ConfirmWithEnter(wxChoice& list, std::function<void()> confirm) {
    auto* action = new EnterAction(list, std::move(confirm));
    list.wxEvtHandler::SetClientObject(action);
    ConnectParts(list.GetHandle(), action);
}

}
