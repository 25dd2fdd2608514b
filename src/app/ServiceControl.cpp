#include "app/ServiceControl.h"

#include "files/FileNames.h"

namespace tarvin {

// Two machines whose names give the same file name share their settings, so they share the service too.
KelText ServiceNameOf(KelTextView machineName) {
    return u"TarvinDL " + FileNameFor(machineName);
}

KelText AccountOf(const ManagedService& service) {
    return service.account.empty() ? u"NT SERVICE\\" + ServiceNameOf(service.machineName) : service.account;
}

}
