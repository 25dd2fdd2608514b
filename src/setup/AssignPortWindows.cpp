#include "base/SetupMessages.h"
#include "port/PortNames.h"
#include "setup/AssignPort.h"

#include <algorithm>

namespace tarvin {

Result<KelText> AssignPort(const std::filesystem::path& /*device*/, const KelText& /*machineName*/) {
    return Error{text::assignPort::notNeededOnWindows};
}

Result<KelText> PortNameFor(const std::filesystem::path& pathsFile, const KelText& port) {
    return PlannedPortName(pathsFile, port);
}

Result<KelText> PlannedPortName(const std::filesystem::path& /*pathsFile*/, const KelText& port) {
    if (!IsPortName(port))
        return Error{Filled(text::setup::noPortName, {port})};
    KelText name = port;
    std::ranges::transform(name, name.begin(), ToUpperAscii);
    return name;
}

}
