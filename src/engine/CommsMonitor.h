#pragma once
// The monitor thread: serves the line from construction until it is stopped. Knows nothing of what a pass does.

#include "base/wThread.h"

namespace tarvin {

class LinkEngine;

class CommsMonitor : public wThread {
public:
    explicit CommsMonitor(LinkEngine& engine);
    ~CommsMonitor() override;

    void Stop() override;

private:
    int Body() override;

    LinkEngine& app;
};

}
