#include "app/ServiceControl.h"
#include "base/ServiceMessages.h"

namespace tarvin {

bool HasServiceManager() {
    return false;
}

Result<KelText> InstallService(const ManagedService&) {
    return Error{text::serviceManager::notHere};
}

Result<KelText> RemoveService(KelTextView) {
    return Error{text::serviceManager::notHere};
}

Result<KelText> ActOnServices(ServiceAction) {
    return Error{text::serviceManager::notHere};
}

Result<> RunForServiceManager(const std::function<int(ServiceHost&)>&) {
    return Error{text::serviceManager::notHere};
}

}
