#include "port/PortList.h"

namespace tarvin {

std::vector<FoundPort> ListPorts(const KelText& currentPort, const std::function<bool(const KelText& name)>& isFree,
                                 const std::function<KelText(const KelText& name)>& deviceOf) {
    std::vector<FoundPort> found;
    bool hasCurrent = currentPort.empty();
    for (int number = 1; number <= 9; ++number) {
        const KelText name = u"COM" + ToText(number);
        const bool isCurrent = EqualIgnoringCase(name, currentPort);
        hasCurrent = hasCurrent || isCurrent;
        if (isCurrent || isFree(name))
            found.push_back({isCurrent ? currentPort : name, deviceOf(name)});
    }
    if (!hasCurrent)
        found.push_back({currentPort, deviceOf(currentPort)});
    return found;
}

}
