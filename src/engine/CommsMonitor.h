#pragma once
// The monitor thread: opens the link, serves it until it is stopped, and closes it.

#include "base/wThread.h"
#include "engine/Monitor.h"

namespace tarvin {

class CommsMonitor : public wThread {
public:
    // Starts the thread.
    explicit CommsMonitor(Monitor& monitor);
    // Stops it and waits for its end, for which a write that blocks is cancelled.
    ~CommsMonitor() override;

    void Stop() override;

private:
    int Body() override;

    Monitor& monitor;
};

}
