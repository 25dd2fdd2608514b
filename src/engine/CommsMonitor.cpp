#include "engine/CommsMonitor.h"

#include "engine/LinkEngine.h"

namespace tarvin {

CommsMonitor::CommsMonitor(LinkEngine& engine) : app(engine) {
    Start();
}

CommsMonitor::~CommsMonitor() {
    CommsMonitor::Stop();
    Wait();
}

void CommsMonitor::Stop() {
    wThread::Stop();
    app.WakeMonitor();
}

int CommsMonitor::Body() {
    while (!StopRequested()) {
        if (!app.RunPass())
            app.WaitForWork();
    }
    return 0;
}

}
