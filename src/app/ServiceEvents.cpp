#include "app/ServiceEvents.h"

#include <cassert>

namespace tarvin {

ServiceEvents::ServiceEvents(ServiceOutput& output, AppInterface& app) : output(output), app(app) {
    assert(app.IsUnattended());
}

void ServiceEvents::SnapshotChanged(const EngineSnapshot& snapshot) {
    // The link first: a status that comes with a new link belongs to it.
    if (snapshot.linkTitle != printedLink) {
        printedLink = snapshot.linkTitle;
        output.Add(printedLink);
    }
    if (snapshot.statusLine != printedStatus) {
        printedStatus = snapshot.statusLine;
        output.Add(printedStatus);
    }
}

}
