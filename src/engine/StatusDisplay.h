#pragma once
// The snapshot of the engine and its way to the window. Knows nothing of what the states mean beyond their texts.
// Monitor thread only, apart from Latest.

#include "engine/DownloadWindow.h"

#include <mutex>

namespace tarvin {

class StatusDisplay {
public:
    explicit StatusDisplay(DownloadWindow& shownIn) : window(shownIn) {}

    // The value under construction; nobody sees a change before it is published.
    EngineSnapshot& Edit() { return next; }
    void SetProgress(std::int64_t position, std::int64_t range);
    // The Send File and Receive File buttons.
    void EnableTransferButtons(bool isEnabled);

    // Takes the state's text into the status line and publishes.
    bool Show(TransferState state, const StatusDescription& description);
    // Hands the value out if it differs from the one published before, and tells whether it did.
    bool Publish();
    // Whether something has been edited since the last time.
    bool IsEdited() const { return next != latest; }

    // Any thread.
    EngineSnapshot Latest() const;

private:
    DownloadWindow& window;
    EngineSnapshot next;
    mutable std::mutex mutex;
    EngineSnapshot latest;
};

}
