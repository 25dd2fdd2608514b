#include "port/PortNames.h"

namespace tarvin {

std::vector<FoundPort> ListPorts(const KelText& currentPort, const std::function<bool(const KelText& name)>& isFree,
                                 const std::function<KelText(const KelText& name)>& deviceOf) {
    std::vector<FoundPort> found;
    bool hasCurrent = currentPort.empty();
    for (int number = 1; number <= highestOfferedPort; ++number) {
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

bool IsPortName(KelTextView name) {
    constexpr KelTextView prefix = u"COM";
    if (!EqualIgnoringCase(name.substr(0, prefix.size()), prefix))
        return false;
    const KelTextView digits = name.substr(prefix.size());
    const auto number = LeadingNumber(digits);
    // Back to text and compared: "COM01" and "COM1x" are no names.
    return number && *number >= 1 && *number <= highestPort && ToText(*number) == digits;
}

}
