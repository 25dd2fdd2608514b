#include "ui/MessageBoxes.h"

#include "logging/LogText.h"
#include "messages/AppInterface.h"
#include "ui/CustomMessage.h"

#include <algorithm>
#include <utility>

#include <wx/display.h>

namespace tarvin {

namespace {

// The lower half of the window: the status and the buttons stay in sight and in reach.
void PlaceBelowButtons(wxWindow& box, const wxWindow& window) {
    const wxRect room = wxDisplay(&window).GetClientArea();
    const wxRect place = window.GetScreenRect();
    const wxSize size = box.GetSize();
    const auto within = [](int at, int first, int last) { return std::max(std::min(at, last), first); };
    box.Move(within(place.x + (place.width - size.x) / 2, room.x, room.GetRight() - size.x),
             within(place.y + place.height / 2, room.y, room.GetBottom() - size.y));
}

}

void MessageBoxes::Show(const MessageBoxText& box) {
    if (isClosing || owner.messages.AnswerWithoutUser(box))
        return;
    queue.Add(box, MomentText(LocalTimeNow()));
    ShowPresent();
}

void MessageBoxes::ShowPresent() {
    const CountedBox* present = queue.Present();
    if (isClosing || present == nullptr)
        return;
    if (open == nullptr) {
        open = new CustomMessage(owner.parent, present->box, owner.showHelp);
        open->WhenFinished([this] { OnFinished(); });
    }
    open->ShowCount(present->count, present->lastTime);
    if (open->IsShown())
        return;
    PlaceBelowButtons(*open, *owner.parent);
    if (owner.isDialogOpen())
        open->ShowWithoutActivating();
    else
        open->Show();
    open->Raise();
}

void MessageBoxes::OnFinished() {
    CustomMessage* finished = std::exchange(open, nullptr);
    if (const auto id = queue.Present()->box.dontShowAgainId; id && finished->IsSuppressed())
        owner.messages.SuppressMessage(*id);
    queue.EndPresent();
    finished->Destroy();
    ShowPresent();
}

void MessageBoxes::EndOutage() {
    const bool isOpenOver = open != nullptr && queue.Present()->box.endsWithOutage;
    queue.EndOutage();
    if (isOpenOver) {
        std::exchange(open, nullptr)->Destroy();
        ShowPresent();
    }
}

void MessageBoxes::CloseAll() {
    isClosing = true;
    if (open != nullptr)
        std::exchange(open, nullptr)->Destroy();
}

}
