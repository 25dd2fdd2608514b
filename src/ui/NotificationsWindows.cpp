#include "ui/Notifications.h"

#include <map>

#include <wx/notifmsg.h>

namespace tarvin {

struct Notifications::Service {
    explicit Service(wxTopLevelWindow& window) : window(window) {}

    wxTopLevelWindow& window;
    std::map<int, std::unique_ptr<wxNotificationMessage>> slots;
};

Notifications::Notifications(wxTopLevelWindow& window) : service(std::make_shared<Service>(window)) {}

Notifications::~Notifications() = default;

void Notifications::Show(const Notification& notification) {
    auto& shown = service->slots[notification.slot];
    if (shown)
        shown->Close();
    shown = std::make_unique<wxNotificationMessage>(ToWx(notification.title), ToWx(notification.text), &service->window,
                                                    notification.isUrgent ? wxICON_WARNING : wxICON_INFORMATION);
    // Without a text, Windows shows nothing at all.
    if (notification.text.empty())
        shown->SetMessage(ToWx(notification.title));
    shown->Show(notification.isUrgent ? wxNotificationMessage::Timeout_Never : wxNotificationMessage::Timeout_Auto);
}

}
