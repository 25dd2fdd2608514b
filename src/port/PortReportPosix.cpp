#include "port/PortReportPosix.h"

#include "base/FirstUseMessages.h"
#include "base/System.h"
#include "port/DeviceIdentityPosix.h"
#include "port/DeviceRightsPosix.h"
#include "port/PortNamesPosix.h"
#include "port/RunningProgramsPosix.h"

#include <cerrno>
#include <fstream>
#include <string>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr int mostUdevLines = 256;
constexpr KelTextView modemManager = u"ModemManager";

bool IsInUse(int handle) {
    int isExclusive = 0;
    // Root can open a device that is in exclusive mode, so the mode itself is asked for. The lock is a shared one: two
    // programs that look at the same time do not take each other for a user of the port.
    return (::ioctl(handle, TIOCGEXCL, &isExclusive) == 0 && isExclusive != 0) ||
           ::flock(handle, LOCK_SH | LOCK_NB) != 0;
}

PortState StateOfError(int error) {
    switch (error) {
    case EBUSY:
        return PortState::Busy;
    case EACCES:
        return PortState::NotAllowed;
    case ENOENT:
    case ENXIO:
    case ENODEV:
        return PortState::NotThere;
    default:
        return PortState::Failed;
    }
}

// O_NONBLOCK: does not wait for a carrier. O_NOCTTY: the line does not become the program's terminal. Closing the
// device leaves the modem signals alone as long as another program has it open.
void Probe(const fs::path& device, PortReport& report) {
    const int handle = ::open(device.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (handle < 0) {
        report.state = StateOfError(errno);
        report.reason = SystemErrorText(static_cast<unsigned long>(errno));
        return;
    }
    if (::isatty(handle) != 1) {
        report.state = PortState::Failed;
        report.reason = SystemErrorText(ENOTTY);
    } else if (IsInUse(handle)) {
        report.state = PortState::Busy;
    }
    ::close(handle);
}

// Whether the system's data about a device tell ModemManager to leave it alone.
bool IsIgnoredByModemManager(dev_t id, const fs::path& udevData) {
    std::ifstream file(udevData / ("c" + std::to_string(major(id)) + ":" + std::to_string(minor(id))));
    std::string line;
    for (int count = 0; count < mostUdevLines && std::getline(file, line); ++count) {
        if (line == "E:ID_MM_DEVICE_IGNORE=1" || line == "E:ID_MM_PORT_IGNORE=1")
            return true;
    }
    return false;
}

class Inspection {
public:
    explicit Inspection(const InspectionRoots& roots) : roots(roots), programs(FindRunningPrograms(roots.processes)) {}

    PortReport Report(const KelText& name, const fs::path& device, bool isOwn) const {
        PortReport report;
        report.name = name;
        report.device = FromPath(device);
        const dev_t id = DeviceId(device);
        if (id == 0) {
            report.state = PortState::NotThere;
            AddStateAdvice(report);
            return report;
        }
        const DeviceIdentity identity = IdentifyDevice(device, id, roots.devices);
        report.maker = identity.maker;
        report.product = identity.product;
        report.serialNumber = identity.serialNumber;
        report.driver = identity.driver;
        if (isOwn) {
            report.state = PortState::Own;
            return report;
        }
        if (const auto holder = programs.holders.find(id); holder != programs.holders.end())
            report.holder = holder->second;
        Probe(device, report);
        if (report.state == PortState::NotAllowed)
            report.advice.push_back(AdviceFor(RightsOf(device)));
        AddStateAdvice(report);
        if (MayBeGrabbed(id, identity))
            report.advice.push_back(
                {Filled(text::portAdvice::modemManager, {report.device}), text::portCommand::stopModemManager});
        return report;
    }

private:
    // ModemManager looks at USB devices only, unless it is told otherwise.
    bool MayBeGrabbed(dev_t id, const DeviceIdentity& identity) const {
        return identity.usbId && programs.names.contains(KelText(modemManager)) &&
               !IsIgnoredByModemManager(id, roots.udevData) &&
               !IsIgnoredByModemManager(*identity.usbId, roots.udevData);
    }

    const InspectionRoots& roots;
    const RunningPrograms programs;
};

}

PortReport InspectPort(const fs::path& pathsFile, const KelText& portName) {
    const InspectionRoots roots;
    const fs::path device = PortNames(pathsFile).DeviceOf(portName).value_or(fs::path());
    return Inspection(roots).Report(portName, device, false);
}

std::vector<PortReport> InspectPorts(const fs::path& pathsFile, const KelText& currentPort, const KelText& ownPort) {
    return InspectPorts(pathsFile, currentPort, ownPort, InspectionRoots());
}

std::vector<PortReport> InspectPorts(const fs::path& pathsFile, const KelText& currentPort, const KelText& ownPort,
                                     const InspectionRoots& roots) {
    const Profile profile = AssignPorts(pathsFile, FindSerialDevices(roots.devices));
    const Inspection inspection(roots);
    std::vector<PortReport> reports;
    bool hasCurrent = currentPort.empty();
    for (int number = 1; number <= highestPort; ++number) {
        const KelText name = u"COM" + ToText(number);
        const fs::path device = PortDevice(profile, name).value_or(fs::path());
        const bool isCurrent = EqualIgnoringCase(name, currentPort);
        hasCurrent = hasCurrent || isCurrent;
        if (isCurrent || DeviceId(device) != 0)
            reports.push_back(inspection.Report(name, device, EqualIgnoringCase(name, ownPort)));
    }
    if (!hasCurrent)
        reports.push_back(inspection.Report(currentPort, PortDevice(profile, currentPort).value_or(fs::path()),
                                            EqualIgnoringCase(currentPort, ownPort)));
    return reports;
}

}
