#include "base/SetupMessages.h"
#include "files/Installation.h"
#include "files/NativeFile.h"
#include "port/PortNamesPosix.h"
#include "setup/AssignPort.h"
#include "setup/InstallationSetup.h"
#include "setup/SettingsChange.h"

#include <algorithm>
#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

bool Exists(const fs::path& path) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(path, ignored));
}

// The path as an entry holds it. Links are kept: a name below by-id stays with the device.
Result<fs::path> FindDevice(const fs::path& path) {
    if (path.empty())
        return Error{text::assignPort::noDeviceGiven};
    if (!Exists(path))
        return Error{Filled(text::assignPort::noSuchDevice, {FromPath(path)})};
    std::error_code error;
    const fs::path absolute = fs::absolute(path, error).lexically_normal();
    if (error || DeviceId(absolute) == 0)
        return Error{Filled(text::assignPort::noSerialPort, {FromPath(path)})};
    return absolute;
}

KelText UpperCase(KelText name) {
    std::ranges::transform(name, name.begin(), ToUpperAscii);
    return name;
}

Result<KelText> AssignInInstallation(const Installation& installation, const fs::path& device,
                                     const KelText& machineName) {
    SettingsStore store = StoreOf(installation, machineName);
    const KelText settingsFile = FromPath(store.FilePath());
    const bool hasSettings = Exists(store.FilePath());
    // The port that the program will open: settings that name none, or are damaged, have a default.
    const auto loaded = store.Load({});
    if (loaded.isRefused)
        return Error{Filled(text::assignPort::cannotRead, {settingsFile})};
    const KelText wantedName = hasSettings ? loaded.settings.port : KelText();
    if (hasSettings && !IsPortName(wantedName))
        return Error{Filled(text::assignPort::noPortInSettings, {settingsFile})};
    const auto name = AssignPortName(installation.PathsFile(), device, wantedName);
    if (!name && hasSettings)
        return Error{Filled(text::assignPort::settingsNameOther, {name.Reason().text, settingsFile, wantedName})};
    if (!name)
        return name;
    if (!hasSettings && !ReplaceWholeFile(store.FilePath(), "[Port Settings]\r\nport=" + ToUtf8(*name) + "\r\n"))
        return Error{Filled(text::assignPort::cannotWrite, {settingsFile})};
    return Filled(text::assignPort::assigned, {FromPath(device), *name, machineName, settingsFile});
}

}

Result<KelText> AssignPort(const fs::path& device, const KelText& machineName) {
    // First of all: a wrong device must not leave an installation behind.
    const auto found = FindDevice(device);
    if (!found)
        return found.Reason();
    KelText done;
    auto folder = FindInstallation();
    if (!folder) {
        folder = FolderFor({});
        const auto made = folder ? MakeInstallation(*folder) : folder.Reason();
        if (!made)
            return made.Reason();
        done = Filled(text::assignPort::madeInstallation, {FromPath(*folder)});
    }
    const auto installation = Installation::Read(*folder);
    if (!installation)
        return installation.Reason();
    auto assigned = AssignInInstallation(*installation, *found, machineName);
    return assigned ? Result<KelText>(done + *assigned) : assigned;
}

Result<KelText> PortNameFor(const fs::path& pathsFile, const KelText& port) {
    if (IsPortName(port)) {
        if (!PortNames(pathsFile).DeviceOf(port))
            (void)AssignPorts(pathsFile, FindSerialDevices(DeviceRoots()));
        return UpperCase(port);
    }
    const auto device = FindDevice(ToPath(port));
    return device ? AssignPortName(pathsFile, *device, {}) : device.Reason();
}

Result<KelText> PlannedPortName(const fs::path& pathsFile, const KelText& port) {
    if (IsPortName(port))
        return UpperCase(port);
    const auto device = FindDevice(ToPath(port));
    return device ? ChoosePortName(Profile::Read(pathsFile).ValueOr(Profile("")), *device, {}) : device.Reason();
}

}
