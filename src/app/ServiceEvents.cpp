#include "app/ServiceEvents.h"

#include "base/Messages.h"

#include <cassert>

namespace tarvin {

namespace {

LineKind KindOf(TransferState state, TransferState before) {
    switch (state) {
    case TransferState::NoLink:
    case TransferState::DownloadCouldNotOpen:
    case TransferState::UploadCouldNotOpen:
    case TransferState::DownloadErrors:
    case TransferState::UploadErrors:
    case TransferState::LoopbackFailure:
    case TransferState::Overrun:
    case TransferState::UnexpectedError:
    case TransferState::FileFormatError:
        return LineKind::Warning;
    default:
        return IsTransferring(state) && state == before ? LineKind::Progress : LineKind::Information;
    }
}

}

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
        output.Add(printedLink, snapshot.hasLink ? LineKind::Information : LineKind::Warning);
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
        output.Add(printedStatus, KindOf(snapshot.transferState, printedState));
        printedState = snapshot.transferState;
        notify.Status(printedStatus);
    }
}

}
