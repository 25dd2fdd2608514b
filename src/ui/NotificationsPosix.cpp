// Calls the notification service of the desktop by D-Bus. The toolkit's own notifications wait for the reply of the
// service: one that hangs blocked the window for 25 s.
#include "ui/Notifications.h"

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>

#include <gio/gio.h>

namespace tarvin {

namespace {

constexpr char serviceName[] = "org.freedesktop.Notifications";
constexpr char servicePath[] = "/org/freedesktop/Notifications";
constexpr int replyMilliseconds = 10000;
// The service decides how long a notification stays.
constexpr std::int32_t usualTime = -1;
constexpr unsigned char normalUrgency = 1;
constexpr unsigned char criticalUrgency = 2;

struct SlotState {
    std::uint32_t id = 0; // of the notification on the screen; 0 for none
    bool isAwaitingReply = false;
    std::optional<Notification> next; // the newest one, until the service has answered
};

// Services read the text as markup.
std::string Escaped(KelTextView text) {
    const std::string utf8 = ToWx(text).utf8_string();
    char* const escaped = g_markup_escape_text(utf8.c_str(), -1);
    std::string result = escaped;
    g_free(escaped);
    return result;
}

GVariant* Arguments(const Notification& notification, std::uint32_t replacedId) {
    GVariantBuilder hints;
    g_variant_builder_init(&hints, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&hints, "{sv}", "urgency",
                          g_variant_new_byte(notification.isUrgent ? criticalUrgency : normalUrgency));
    // The program has a setting of its own for sound.
    g_variant_builder_add(&hints, "{sv}", "suppress-sound", g_variant_new_boolean(TRUE));
    // Through the toolkit, which gives valid UTF-8 in every case: the call must not carry any other.
    return g_variant_new("(susssasa{sv}i)", "TarvinDL", replacedId, "tarvindl",
                         ToWx(notification.title).utf8_string().c_str(), Escaped(notification.text).c_str(), nullptr,
                         &hints, usualTime);
}

}

// Replies come later, in the toolkit's loop, perhaps when the window is gone: each of them keeps the service alive.
struct Notifications::Service : std::enable_shared_from_this<Service> {
    ~Service() {
        if (connection != nullptr)
            g_object_unref(connection);
    }

    void Connect() {
        if (std::exchange(isConnecting, true))
            return;
        g_bus_get(G_BUS_TYPE_SESSION, nullptr, &OnConnected, new Reply{shared_from_this(), 0});
    }

    void SendNext(int slot) {
        SlotState& state = slots[slot];
        if (state.isAwaitingReply || !state.next)
            return;
        state.isAwaitingReply = true;
        const Notification notification = *std::exchange(state.next, std::nullopt);
        g_dbus_connection_call(connection, serviceName, servicePath, serviceName, "Notify",
                               Arguments(notification, state.id), G_VARIANT_TYPE("(u)"), G_DBUS_CALL_FLAGS_NONE,
                               replyMilliseconds, nullptr, &OnReply, new Reply{shared_from_this(), slot});
    }

    // What a call of GDBus carries for its reply.
    struct Reply {
        std::shared_ptr<Service> service;
        int slot;
    };

    static void OnConnected(GObject*, GAsyncResult* result, void* data) {
        const std::unique_ptr<Reply> reply(static_cast<Reply*>(data));
        Service& service = *reply->service;
        service.isConnecting = false;
        service.connection = g_bus_get_finish(result, nullptr);
        if (service.connection == nullptr) {
            // No session bus: there is no one to show anything.
            service.slots.clear();
            return;
        }
        // By default GDBus ends the process when the bus goes.
        g_dbus_connection_set_exit_on_close(service.connection, FALSE);
        for (const auto& [slot, state] : service.slots)
            service.SendNext(slot);
    }

    static void OnReply(GObject* source, GAsyncResult* result, void* data) {
        const std::unique_ptr<Reply> reply(static_cast<Reply*>(data));
        GVariant* const answer = g_dbus_connection_call_finish(G_DBUS_CONNECTION(source), result, nullptr);
        SlotState& state = reply->service->slots[reply->slot];
        state.isAwaitingReply = false;
        state.id = 0;
        if (answer != nullptr) {
            g_variant_get(answer, "(u)", &state.id);
            g_variant_unref(answer);
        }
        reply->service->Show(reply->slot);
    }

    // Sends the newest notification of the slot as soon as there is a connection.
    void Show(int slot) {
        if (connection != nullptr && g_dbus_connection_is_closed(connection))
            g_clear_object(&connection);
        if (connection != nullptr)
            SendNext(slot);
        else if (slots[slot].next)
            Connect();
    }

    GDBusConnection* connection = nullptr;
    bool isConnecting = false;
    std::map<int, SlotState> slots;
};

Notifications::Notifications(wxTopLevelWindow&) : service(std::make_shared<Service>()) {}

Notifications::~Notifications() = default;

void Notifications::Show(const Notification& notification) {
    service->slots[notification.slot].next = notification;
    service->Show(notification.slot);
}

}
