#include "port/PortEntriesPosix.h"

#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <set>
#include <string>
#include <thread>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr KelTextView portSection = u"PORTS";
constexpr std::size_t maximumPathUnits = 4096;
// Nobody has more ports; a file that claims to is not to cost a look at each.
constexpr std::size_t maximumEntries = 256;
constexpr int highestNumber = 9;

// The file, held against everyone who adds entries. Others replace the file under its name while they hold it, so the
// one that was opened may be the old one by the time it is got hold of.
bool HoldFile(NativeFile& file, const std::filesystem::path& path, std::chrono::milliseconds longestWait) {
    const auto deadline = std::chrono::steady_clock::now() + longestWait;
    while (file.Open(path, NativeFile::Access::Read)) {
        if (file.Lock() && file.IsAt(path))
            return true;
        if (std::chrono::steady_clock::now() >= deadline)
            break;
        std::this_thread::sleep_for(5ms);
    }
    file.Close();
    return false;
}

std::string ReadEntries(const std::filesystem::path& path) {
    return ReadWholeFile(path, Profile::maxFileBytes).ValueOr(std::string());
}

std::set<dev_t> DevicesWithEntry(const Profile& profile) {
    std::set<dev_t> ids;
    const auto entries = profile.Entries(portSection);
    for (const Profile::Entry& entry : entries.first(std::min(entries.size(), maximumEntries)))
        ids.insert(DeviceId(ToPath(entry.value)));
    return ids;
}

bool HasEntry(const Profile& profile, KelTextView portName) {
    const auto entries = profile.Entries(portSection);
    return std::any_of(entries.begin(), entries.end(),
                       [&](const Profile::Entry& entry) { return EqualIgnoringCase(entry.key, portName); });
}

std::string WithDevices(std::string content, const std::vector<SerialDevice>& devices) {
    const Profile before(content);
    std::set<dev_t> known = DevicesWithEntry(before);
    int number = 1;
    for (const SerialDevice& device : devices) {
        if (!known.insert(device.id).second)
            continue;
        // An entry keeps its number while its device is away, and an empty one keeps it from being given.
        while (number <= highestNumber && HasEntry(before, u"COM" + ToText(number)))
            ++number;
        if (number > highestNumber)
            break;
        content = WithProfileEntry(content, portSection, u"COM" + ToText(number), FromPath(device.path));
        ++number;
    }
    return content;
}

}

std::optional<std::filesystem::path> PortDevice(const Profile& profile, KelTextView portName) {
    const KelText device = profile.Text(portSection, portName, u"", maximumPathUnits);
    if (device.empty())
        return std::nullopt;
    return ToPath(device);
}

Profile AssignPorts(const std::filesystem::path& pathsFile, const std::vector<SerialDevice>& devices,
                    std::chrono::milliseconds longestWait) {
    const std::set<dev_t> known = DevicesWithEntry(Profile(ReadEntries(pathsFile)));
    std::vector<SerialDevice> fresh;
    std::copy_if(devices.begin(), devices.end(), std::back_inserter(fresh),
                 [&](const SerialDevice& device) { return !known.contains(device.id) && HasHardware(device); });
    if (fresh.empty())
        return Profile(ReadEntries(pathsFile));
    NativeFile held;
    const bool isHeld = HoldFile(held, pathsFile, longestWait);
    const auto before = ReadWholeFile(pathsFile, Profile::maxFileBytes);
    const std::string after = WithDevices(before.ValueOr(std::string()), fresh);
    // A file that cannot be read is no profile, and is not made one.
    if (isHeld && before && after != *before && after.size() <= Profile::maxFileBytes)
        (void)ReplaceWholeFile(pathsFile, after);
    return Profile(after);
}

}
