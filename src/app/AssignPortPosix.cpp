#include "app/AssignPort.h"
#include "app/Program.h"
#include "base/Messages.h"
#include "files/NativeFile.h"
#include "port/PortNamesPosix.h"
#include "settings/SettingsStore.h"

#include <system_error>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr const char* freshPathsFile = "[PROGRAM PATHS]\r\nNC Files=NC Files\r\n[PORTS]\r\n";

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

// Makes an installation where the program will look for one.
Result<fs::path> MakeInstallation() {
    const auto chosen = SystemInstallationCandidates().chosen;
    const auto folder = chosen ? chosen : UserInstallation();
    if (!folder)
        return Error{text::assignPort::noHome};
    const fs::path pathsFile = *folder / "KEL.INI";
    // The search found no readable KEL.INI. One that exists all the same is kept.
    if (Exists(pathsFile))
        return Error{Filled(text::assignPort::cannotRead, {FromPath(pathsFile)})};
    std::error_code error;
    fs::create_directories(*folder / "NC Files", error);
    if (error || !ReplaceWholeFile(pathsFile, freshPathsFile))
        return Error{Filled(text::assignPort::cannotMakeInstallation, {FromPath(*folder)})};
    return *folder;
}

Result<KelText> AssignInInstallation(const Installation& installation, const fs::path& device,
                                     const KelText& machineName) {
    SettingsStore store(installation.Folder(), machineName, FromPath(installation.NcFilesFolder()));
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

Result<KelText> AssignPort(const fs::path& device, KelTextView commandLine) {
    // First of all: a wrong device must not leave an installation behind.
    const auto found = FindDevice(device);
    if (!found)
        return found.Reason();
    KelText done;
    if (!FindInstallation()) {
        const auto made = MakeInstallation();
        if (!made)
            return made.Reason();
        done = Filled(text::assignPort::madeInstallation, {FromPath(*made)});
    }
    const auto installation = FindProgramInstallation();
    if (!installation)
        return installation.Reason();
    auto assigned = AssignInInstallation(*installation, *found, MachineNameOf(commandLine));
    return assigned ? Result<KelText>(done + *assigned) : assigned;
}

}
