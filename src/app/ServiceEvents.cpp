#include "app/ServiceEvents.h"

#include <cassert>

namespace tarvin {

ServiceEvents::ServiceEvents(ServiceOutput& output, AppInterface& messages) : output(output), messages(messages) {
    assert(messages.IsUnattended());
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
