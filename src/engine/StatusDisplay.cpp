#include "engine/StatusDisplay.h"

namespace tarvin {

void StatusDisplay::SetProgress(std::int64_t position, std::int64_t range) {
    next.progressPosition = position;
    next.progressRange = range;
}

void StatusDisplay::EnableTransferButtons(bool isEnabled) {
    next.sendFile.isEnabled = isEnabled;
    next.receiveFile.isEnabled = isEnabled;
}

bool StatusDisplay::Show(TransferState state, const StatusDescription& description) {
    next.transferState = state;
    if (description.line)
        next.statusLine = *description.line;
    // Whatever has ended a transfer: its dialog has nothing left to end, and the next one may begin.
    if (state != TransferState::Downloading && state != TransferState::Uploading) {
        next.endDialog = EndDialog::None;
        EnableTransferButtons(true);
    }
    return Publish();
}

bool StatusDisplay::Publish() {
    // Only this thread writes `latest`, so that it may compare without the lock.
    if (next == latest)
        return false;
    {
        const std::lock_guard lock(mutex);
        latest = next;
    }
    window.SnapshotChanged(next);
    return true;
}

EngineSnapshot StatusDisplay::Latest() const {
    const std::lock_guard lock(mutex);
    return latest;
}

}
