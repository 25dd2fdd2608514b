#pragma once
// Which port names a user may choose from, on every system. Knows nothing of devices.

#include "port/PortScan.h"

#include <functional>

namespace tarvin {

// COM1 to COM9 as far as `isFree` says so, and the current port, for which it is not asked; in the order that FindPorts
// promises. `deviceOf` gives the text to show beside a name.
std::vector<FoundPort> ListPorts(const KelText& currentPort, const std::function<bool(const KelText& name)>& isFree,
                                 const std::function<KelText(const KelText& name)>& deviceOf);

}
