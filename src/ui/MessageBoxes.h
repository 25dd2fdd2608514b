#pragma once
// Shows the boxes that need no answer, one after the other, beside the window: the user may leave one open and go on
// working. User-interface thread.

#include "messages/MessageQueue.h"
#include "ui/Wx.h"

#include <functional>

namespace tarvin {

class AppInterface;
class CustomMessage;

class MessageBoxes {
public:
    struct Owner {
        wxWindow* parent;
        AppInterface& messages;
        std::function<void()> showHelp;
        // Whether the user works in a dialog. A box leaves the keyboard there.
        std::function<bool()> isDialogOpen;
    };

    explicit MessageBoxes(Owner owner) : owner(std::move(owner)) {}

    // Shows the box now or after the others, unless it is answered without the user. One that looks like a box that is
    // open or waits is counted there.
    void Show(const MessageBoxText& box);
    // Closes the boxes about an outage.
    void EndOutage();
    // Closes the open box and shows no more.
    void CloseAll();

private:
    void ShowPresent();
    void OnFinished();

    const Owner owner;
    MessageQueue queue;
    CustomMessage* open = nullptr; // shows the queue's present box
    bool isClosing = false;
};

}
