#include "app/ServiceWindow.h"

namespace tarvin {

void ServiceWindow::SnapshotChanged(const EngineSnapshot& snapshot) {
    if (snapshot.linkTitle != shownLink) {
        shownLink = snapshot.linkTitle;
        output.Add(shownLink);
    }
    if (snapshot.statusLine != shownStatus) {
        shownStatus = snapshot.statusLine;
        output.Add(shownStatus);
    }
}

}
