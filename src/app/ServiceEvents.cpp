#include "app/ServiceEvents.h"

#include "base/Messages.h"

#include <cassert>

namespace tarvin {

ServiceEvents::ServiceEvents(ServiceOutput& output, ServiceNotify& notify, AppInterface& messages)
    : output(output), notify(notify), messages(messages) {
    assert(messages.IsUnattended());
}

// What a user does not want to see in a window again still belongs into the output of a service, so the number is left
// out.
void ServiceEvents::ShowMessage(const MessageBoxText& box) {
    messages.AnswerWithoutUser({box.text, box.caption, box.style});
}

void ServiceEvents::SnapshotChanged(const EngineSnapshot& snapshot) {
    // The link first: a status that comes with a new link belongs to it.
    if (snapshot.linkTitle != printedLink) {
        printedLink = snapshot.linkTitle;
        output.Add(printedLink);
    }
    if (snapshot.notice != printedNotice) {
        printedNotice = snapshot.notice;
        output.Add(printedNotice.empty() ? KelTextView(text::notice::free) : printedNotice);
    }
    if (snapshot.announcement != printedAnnouncement) {
        printedAnnouncement = snapshot.announcement;
        if (!printedAnnouncement.empty())
            output.Add(printedAnnouncement);
    }
    if (snapshot.statusLine != printedStatus) {
        printedStatus = snapshot.statusLine;
        output.Add(printedStatus);
        notify.Status(printedStatus);
    }
}

}
