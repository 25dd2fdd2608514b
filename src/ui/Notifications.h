#pragma once
// Notifications of the desktop, beside the window. User-interface thread.

#include "ui/Wx.h"

#include <memory>

namespace tarvin {

struct Notification {
    // A newer notification of a slot takes the place of the older one, where the desktop can do that.
    int slot = 0;
    KelText title;
    KelText text; // may be empty
    // Stays until a user has seen it.
    bool isUrgent = false;
};

class Notifications {
public:
    // `window` is what the notifications are about. It outlives the object.
    explicit Notifications(wxTopLevelWindow& window);
    // Leaves what is shown on the screen.
    ~Notifications();
    Notifications(const Notifications&) = delete;
    Notifications& operator=(const Notifications&) = delete;

    // Never waits. A desktop without notifications shows none. While its service does not answer, only the newest
    // notification of each slot is kept.
    void Show(const Notification& notification);

private:
    struct Service;
    const std::shared_ptr<Service> service;
};

}
