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
    // Whoever has begun a transfer and whatever has ended it: a second one must not break into it, and without one
    // there is nothing to end.
    EnableTransferButtons(!IsTransferring(state));
    if (!IsTransferring(state))
        next.endDialog = EndDialog::None;
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
