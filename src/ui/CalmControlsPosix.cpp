#include "ui/CalmControls.h"

#include <utility>

#include <dlfcn.h>

namespace tarvin {

namespace {

// The toolkit's list has a button inside, which takes Enter before wxWidgets sees the key. These operations of the
// libraries below wxWidgets reach that button. They are looked up at run time, because building needs only the headers
// of wxWidgets: without them Enter opens the list.
struct Toolkit {
    using Handler = int (*)(void* widget, void* event, void* data);

    template <typename Function>
    static Function* Find(const char* name) {
        return reinterpret_cast<Function*>(::dlsym(RTLD_DEFAULT, name));
    }

    void (*forEachPart)(void*, void (*)(void*, void*),
                        void*) = Find<void(void*, void (*)(void*, void*), void*)>("gtk_container_forall");
    unsigned long (*containerType)() = Find<unsigned long()>("gtk_container_get_type");
    int (*isA)(void*, unsigned long) = Find<int(void*, unsigned long)>("g_type_check_instance_is_a");
    unsigned long (*connect)(void*, const char*, Handler, void*, void*, int) =
        Find<unsigned long(void*, const char*, Handler, void*, void*, int)>("g_signal_connect_data");
    int (*getKey)(const void*, unsigned*) = Find<int(const void*, unsigned*)>("gdk_event_get_keyval");

    bool IsThere() const {
        return forEachPart != nullptr && containerType != nullptr && isA != nullptr && connect != nullptr &&
               getKey != nullptr;
    }
};

const Toolkit& TheToolkit() {
    static const Toolkit toolkit;
    return toolkit;
}

bool IsEnter(void* event) {
    constexpr unsigned enter = 0xFF0D;
    constexpr unsigned enterOfKeypad = 0xFF8D;
    unsigned key = 0;
    return TheToolkit().getKey(event, &key) != 0 && (key == enter || key == enterOfKeypad);
}

// Owned by the list, as are the parts that use it.
struct EnterAction : wxClientData {
    EnterAction(wxChoice& list, std::function<void()> confirm) : list(list), confirm(std::move(confirm)) {}
    wxChoice& list;
    const std::function<void()> confirm;
};

int OnKey(void*, void* event, void* data) {
    if (!IsEnter(event))
        return 0;
    // Later: the dialog may go, and with it the list that is still handling its key.
    auto& action = *static_cast<EnterAction*>(data);
    action.list.CallAfter(action.confirm);
    return 1;
}

void ConnectParts(void* widget, void* action) {
    const Toolkit& toolkit = TheToolkit();
    toolkit.connect(widget, "key-press-event", OnKey, action, nullptr, 0);
    if (toolkit.isA(widget, toolkit.containerType()) != 0)
        toolkit.forEachPart(widget, ConnectParts, action);
}

}

// The open list is a window of its own, so its keys do not come here.
void ConfirmWithEnter(wxChoice& list, std::function<void()> confirm) {
    if (!TheToolkit().IsThere())
        return;
    auto* action = new EnterAction(list, std::move(confirm));
    list.wxEvtHandler::SetClientObject(action);
    ConnectParts(list.GetHandle(), action);
}

}
