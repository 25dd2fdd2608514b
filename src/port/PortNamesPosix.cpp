#include "port/PortNamesPosix.h"

#include "base/Messages.h"
#include "files/FileHold.h"
#include "files/NativeFile.h"
#include "files/Profile.h"

#include <algorithm>
#include <cassert>
#include <set>
#include <string>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr KelTextView portSection = u"PORTS";
constexpr std::size_t maximumPathUnits = 4096;
// A look at each device costs time. No computer has more ports; entries above this number are ignored.
constexpr std::size_t maximumEntries = 256;
constexpr auto longestAssignWait = 2s;

KelText NumberedName(int number) {
    return u"COM" + ToText(number);
}

KelText ToUpper(KelTextView text) {
    KelText upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), ToUpperAscii);
    return upper;
}

std::string ReadEntries(const std::filesystem::path& path) {
    const auto content = ReadWholeFile(path, Profile::maxFileBytes);
    return content ? *content : std::string();
}

auto EntriesOf(const Profile& profile) {
    const auto entries = profile.Entries(portSection);
    return entries.first(std::min(entries.size(), maximumEntries));
}

std::set<dev_t> DevicesWithEntry(const Profile& profile) {
    std::set<dev_t> ids;
    for (const Profile::Entry& entry : EntriesOf(profile))
        ids.insert(DeviceId(ToPath(entry.value)));
    return ids;
}

bool HasEntry(const Profile& profile, KelTextView portName) {
    const auto entries = profile.Entries(portSection);
    return std::any_of(entries.begin(), entries.end(),
                       [&](const Profile::Entry& entry) { return EqualIgnoringCase(entry.key, portName); });
}

// The first number from `first` to `last` whose name has no entry. An entry keeps its name while its device is away,
// and so does an empty entry.
std::optional<int> FreeNumber(const Profile& profile, int first, int last) {
    for (int number = first; number <= last; ++number) {
        if (!HasEntry(profile, NumberedName(number)))
            return number;
    }
    return std::nullopt;
}

std::string WithDevices(std::string content, const std::vector<SerialDevice>& devices) {
    const Profile before(content);
    std::set<dev_t> known = DevicesWithEntry(before);
    int next = 1;
    for (const SerialDevice& device : devices) {
        if (!known.insert(device.id).second)
            continue;
        const auto number = FreeNumber(before, next, highestOfferedPort);
        if (!number)
            break;
        content = WithProfileEntry(content, portSection, NumberedName(*number), FromPath(device.path));
        next = *number + 1;
    }
    return content;
}

// By whatever path: a device may have several, and is the same one by each of them.
bool IsSameDevice(const std::filesystem::path& left, const std::filesystem::path& right) {
    const dev_t id = DeviceId(left);
    return left == right || (id != 0 && id == DeviceId(right));
}

// The name under which the profile leads to the device. Of two entries with one name the second leads nowhere.
std::optional<KelText> NameOfDevice(const Profile& profile, const std::filesystem::path& device) {
    for (const Profile::Entry& entry : EntriesOf(profile)) {
        const auto found = IsPortName(entry.key) ? PortDevice(profile, entry.key) : std::nullopt;
        if (found && IsSameDevice(*found, device))
            return ToUpper(entry.key);
    }
    return std::nullopt;
}

}

std::optional<std::filesystem::path> PortNames::DeviceOf(const KelText& portName) const {
    const auto profile = Profile::Read(pathsFile);
    return profile ? PortDevice(*profile, portName) : std::nullopt;
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
    // The usual case: nothing is new, and the file stays unlocked.
    if (fresh.empty())
        return Profile(ReadEntries(pathsFile));
    NativeFile held;
    const bool isHeld = HoldFile(held, pathsFile, longestWait);
    // Read again under the lock: another program may have added entries.
    const auto before = ReadWholeFile(pathsFile, Profile::maxFileBytes);
    const std::string after = WithDevices(before ? *before : std::string(), fresh);
    // A file that cannot be read, or is too long, stays as it is.
    if (isHeld && before && after != *before && after.size() <= Profile::maxFileBytes)
        (void)ReplaceWholeFile(pathsFile, after);
    return Profile(after);
}

Result<KelText> ChoosePortName(const Profile& profile, const std::filesystem::path& device, KelTextView wantedName) {
    if (!CanStandInEntry(device))
        return Error{Filled(text::assignPort::cannotHoldName, {FromPath(device)})};
    if (wantedName.empty()) {
        if (auto present = NameOfDevice(profile, device))
            return std::move(*present);
        const auto number = FreeNumber(profile, 1, highestPort);
        if (!number)
            return Error{text::assignPort::allNamesTaken};
        return NumberedName(*number);
    }
    const auto present = PortDevice(profile, wantedName);
    if (present && !IsSameDevice(*present, device))
        return Error{Filled(text::assignPort::nameTaken, {wantedName, FromPath(*present)})};
    if (!present && HasEntry(profile, wantedName))
        return Error{Filled(text::assignPort::emptyEntry, {wantedName})};
    return ToUpper(wantedName);
}

Result<KelText> AssignPortName(const std::filesystem::path& pathsFile, const std::filesystem::path& device,
                               KelTextView wantedName) {
    assert(device.is_absolute() && (wantedName.empty() || IsPortName(wantedName)));
    NativeFile held;
    if (!HoldFile(held, pathsFile, longestAssignWait))
        return Error{Filled(text::assignPort::cannotReadOrHeld, {FromPath(pathsFile)})};
    const auto before = ReadWholeFile(pathsFile, Profile::maxFileBytes);
    if (!before)
        return Error{Filled(text::assignPort::cannotRead, {FromPath(pathsFile)})};
    const Profile profile(*before);
    const auto name = ChoosePortName(profile, device, wantedName);
    if (!name || HasEntry(profile, *name))
        return name;
    const std::string after = WithProfileEntry(*before, portSection, *name, FromPath(device));
    // A file of arbitrary bytes may not give the entry back.
    if (after.size() > Profile::maxFileBytes || PortDevice(Profile(after), *name) != device)
        return Error{Filled(text::assignPort::noRoom, {FromPath(pathsFile)})};
    if (!ReplaceWholeFile(pathsFile, after))
        return Error{Filled(text::assignPort::cannotWrite, {FromPath(pathsFile)})};
    return name;
}

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort) {
    return FindPorts(pathsFile, currentPort, DeviceRoots());
}

std::vector<FoundPort> FindPorts(const std::filesystem::path& pathsFile, const KelText& currentPort,
                                 const DeviceRoots& roots) {
    const Profile profile = AssignPorts(pathsFile, FindSerialDevices(roots));
    const auto deviceOf = [&](const KelText& name) {
        const auto device = PortDevice(profile, name);
        return device ? FromPath(*device) : KelText();
    };
    return ListPorts(
        currentPort, [&](const KelText& name) { return IsFree(ToPath(deviceOf(name))); }, deviceOf);
}

}
