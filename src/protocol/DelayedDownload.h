#pragma once
// The start of a download that the controller has asked for: sends the start character if the settings ask for it, then
// waits for the transmit delay, in which the machine gets ready. Monitor thread.

#include "protocol/Protocol.h"

namespace tarvin {

class DelayedDownload {
public:
    // `begin` is called in state DownloadPreparation, within Start or when the delay is over.
    DelayedDownload(const ProtocolParts& parts, std::function<void()> begin);

    void Start();
    bool IsWaiting() const { return delay.IsRunning(); }
    // Gives up a download whose delay still runs. Does nothing without one.
    void Drop() { delay.Stop(); }

private:
    void Begin();

    const ProtocolParts parts;
    const std::function<void()> begin;
    Timer delay;
};

}
