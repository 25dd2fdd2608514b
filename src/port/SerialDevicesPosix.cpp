#include "port/SerialDevicesPosix.h"

#include "base/DescriptorPosix.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <map>
#include <set>
#include <string>

#include <fcntl.h>
#include <linux/major.h>
#include <linux/serial.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <unistd.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

// O_NONBLOCK: does not wait for a carrier. O_NOCTTY: the line does not become the program's terminal.
constexpr int deviceFlags = O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC;

// The names in a folder, short ones first: this puts ttyS2 before ttyS10.
std::vector<std::string> NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end; entry.increment(error))
        names.push_back(entry->path().filename().string());
    std::sort(names.begin(), names.end(), [](const std::string& left, const std::string& right) {
        return left.size() != right.size() ? left.size() < right.size() : left < right;
    });
    return names;
}

std::set<std::string> ConsolesInUse(const fs::path& terminalClass) {
    std::ifstream file(terminalClass / "console" / "active");
    std::set<std::string> consoles;
    for (std::string name; file >> name;)
        consoles.insert(name);
    return consoles;
}

// By device, the first path below by-id that leads to it.
std::map<dev_t, fs::path> LastingPaths(const fs::path& byId) {
    std::map<dev_t, fs::path> paths;
    for (const std::string& name : NamesIn(byId)) {
        if (const dev_t id = DeviceId(byId / name); id != 0 && CanStandInEntry(byId / name))
            paths.emplace(id, byId / name);
    }
    return paths;
}

// The system shows the type to users who may not open the device.
bool HasHardwareByType(dev_t id) {
    std::ifstream file("/sys/dev/char/" + std::to_string(major(id)) + ":" + std::to_string(minor(id)) + "/type");
    int type = PORT_UNKNOWN;
    return file >> type && type != PORT_UNKNOWN;
}

}

bool CanStandInEntry(const fs::path& path) {
    const std::string& text = path.native();
    return std::all_of(text.begin(), text.end(), [](char unit) { return unit > ' ' && unit <= '~'; });
}

dev_t DeviceId(const fs::path& path) {
    struct stat state = {};
    return ::stat(path.c_str(), &state) == 0 && S_ISCHR(state.st_mode) ? state.st_rdev : 0;
}

std::vector<SerialDevice> FindSerialDevices(const DeviceRoots& roots) {
    const std::set<std::string> consoles = ConsolesInUse(roots.terminalClass);
    const std::map<dev_t, fs::path> lasting = LastingPaths(roots.byId);
    std::vector<SerialDevice> devices;
    for (const std::string& name : NamesIn(roots.terminalClass)) {
        std::error_code isMissing;
        // A name without a device is a virtual terminal.
        if (consoles.contains(name) || !fs::exists(roots.terminalClass / name / "device", isMissing))
            continue;
        const fs::path path = roots.devices / name;
        const dev_t id = DeviceId(path);
        const auto found = lasting.find(id);
        if (id != 0 && CanStandInEntry(path))
            devices.push_back({found != lasting.end() ? found->second : path, id});
    }
    return devices;
}

bool HasHardware(const SerialDevice& device) {
    // The kernel makes ttyS0 and so on for the board whether or not a chip answers, and their type tells. Of other
    // devices the type tells nothing: many drivers of USB adapters leave it out.
    if (major(device.id) != TTY_MAJOR)
        return true;
    const Descriptor opened(::open(device.path.c_str(), deviceFlags));
    if (opened.Number() < 0)
        return errno == EBUSY || (errno == EACCES && HasHardwareByType(device.id));
    serial_struct serial = {};
    return ::ioctl(opened.Number(), TIOCGSERIAL, &serial) != 0 || serial.type != PORT_UNKNOWN;
}

bool IsFree(const fs::path& device) {
    if (DeviceId(device) == 0)
        return false;
    const Descriptor opened(::open(device.c_str(), deviceFlags));
    // Root can open a device that is in exclusive mode, so the mode itself is asked for.
    int isExclusive = 0;
    return opened.Number() >= 0 && ::isatty(opened.Number()) == 1 &&
           (::ioctl(opened.Number(), TIOCGEXCL, &isExclusive) != 0 || isExclusive == 0) &&
           ::flock(opened.Number(), LOCK_EX | LOCK_NB) == 0;
}

}
