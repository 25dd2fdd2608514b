#include "app/ServiceNotify.h"

namespace tarvin {

// The service control manager of Windows asks by itself.
ServiceNotify::ServiceNotify() = default;
ServiceNotify::~ServiceNotify() = default;
void ServiceNotify::Send(std::string_view) {}
void ServiceNotify::Ready() {}
void ServiceNotify::Reloading() {}
void ServiceNotify::Stopping() {}
void ServiceNotify::Status(KelTextView) {}
void ServiceNotify::Alive() {}

}
