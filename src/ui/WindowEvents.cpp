#include "ui/WindowEvents.h"

#include "settings/DownloadSettings.h"

#include <cassert>
#include <utility>

namespace tarvin {

void WindowEvents::Attach(Receiver& newReceiver) {
    assert(receiver == nullptr);
    receiver = &newReceiver;
}

void WindowEvents::Detach() {
    receiver = nullptr;
}

std::deque<MessageBoxText> WindowEvents::TakeUnseenBoxes() {
    assert(receiver == nullptr);
    const MutexLock lock(mutex);
    return std::exchange(boxes, {});
}

void WindowEvents::Post(std::function<void()> call) {
    handler.CallAfter([this, kept = std::move(call)] {
        if (receiver != nullptr)
            kept();
    });
}

void WindowEvents::SnapshotChanged(const EngineSnapshot&) {
    // One event in the toolkit's queue is enough: its receiver asks the engine for the latest snapshot.
    if (isSnapshotPending.exchange(true))
        return;
    Post([this] {
        // Cleared first, so that a snapshot that comes during the call posts the next event.
        isSnapshotPending = false;
        receiver->OnSnapshotChanged();
    });
}

void WindowEvents::TrafficArrived() {
    Post([this] { receiver->OnTrafficArrived(); });
}

void WindowEvents::ShowMessage(const MessageBoxText& box) {
    {
        const MutexLock lock(mutex);
        boxes.push_back(box);
    }
    Post([this] {
        MessageBoxText next;
        {
            const MutexLock lock(mutex);
            next = std::move(boxes.front());
            boxes.pop_front();
        }
        receiver->OnMessage(next);
    });
}

void WindowEvents::OutageEnded() {
    Post([this] { receiver->OnOutageEnded(); });
}

void WindowEvents::SettingsChanged(const DownloadSettings& settings) {
    Post([this, settings] { receiver->OnSettingsChanged(settings); });
}

}
