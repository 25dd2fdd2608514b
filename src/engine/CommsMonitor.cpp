#include "engine/CommsMonitor.h"

namespace tarvin {

using namespace std::chrono_literals;

CommsMonitor::CommsMonitor(Monitor& monitor) : monitor(monitor) {
    Start();
}

CommsMonitor::~CommsMonitor() {
    CommsMonitor::Stop();
    // Again and again: a write that is about to begin cannot be cancelled yet.
    do
        monitor.PrepareClose();
    while (!WaitFor(10ms));
    Wait();
}

void CommsMonitor::Stop() {
    wThread::Stop();
    monitor.Wake();
}

int CommsMonitor::Body() {
    monitor.Open();
    while (!StopRequested()) {
        if (!monitor.RunPass())
            monitor.WaitForWork();
    }
    monitor.Close();
    return 0;
}

}
