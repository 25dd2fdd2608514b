#include "base/SetupMessages.h"
#include "files/NativeFile.h"
#include "files/Profile.h"
#include "port/DeviceIdentityPosix.h"
#include "port/PortNames.h"
#include "protocol/TarvinApp.h"
#include "setup/ServiceUnits.h"
#include "setup/SettingsChange.h"
#include "setup/UnitFiles.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvin {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t longestFile = 1 << 16;
constexpr const char* byPathFolder = "/dev/serial/by-path";

// Folders of the settings, and of logs, each once. Relative ones are below the installation, which the unit may write
// anyway.
std::vector<fs::path> FoldersOf(const Installation& installation, const DownloadSettings& settings) {
    std::vector<fs::path> folders;
    const auto take = [&](const fs::path& folder) {
        // Without the separator at the end.
        fs::path plain = (folder / "x").lexically_normal().parent_path();
        if (folder.is_absolute() && std::ranges::find(folders, plain) == folders.end())
            folders.push_back(std::move(plain));
    };
    take(ToPath(settings.uploadPath));
    take(ToPath(settings.downloadPath));
    if (settings.writeLog != 0)
        take(ToPath(settings.logFile).parent_path());
    const Profile profile = Profile::Read(installation.PathsFile()).ValueOr(Profile(""));
    take(ToPath(profile.Text(u"Service", u"comms log", u"", 4096)).parent_path());
    return folders;
}

// The value of ID_PATH: the name below by-path without the number of the port.
KelText IdPathOf(dev_t id) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator(byPathFolder, ignored)) {
        if (DeviceId(entry.path()) != id)
            continue;
        const KelText name = FromPath(entry.path().filename());
        return name.substr(0, name.rfind(u"-port"));
    }
    return {};
}

// None if the device is away.
std::optional<PortMark> MarkOf(const fs::path& device) {
    const dev_t id = DeviceId(device);
    if (id == 0)
        return std::nullopt;
    std::error_code error;
    const fs::path kernelDevice = fs::canonical(device, error);
    const DeviceIdentity identity = IdentifyDevice(device, id, DeviceRoots());
    return PortMark{FromPath(device),   identity.serialNumber, identity.vendorId,
                    identity.productId, IdPathOf(id),          error ? KelText() : FromPath(kernelDevice.filename())};
}

class UnitWriter {
public:
    explicit UnitWriter(const UnitPlaces& places) : places(places) {}

    // Removes the file if the content is empty.
    Result<> Write(const fs::path& file, const std::string& content) {
        const auto present = ReadWholeFile(file, longestFile);
        if (content.empty() ? !present : present && *present == content) {
            if (present)
                report.push_back(Filled(text::setupUnits::there, {FromPath(file)}));
            return {};
        }
        std::error_code error;
        if (content.empty())
            fs::remove(file, error);
        else
            fs::create_directories(file.parent_path(), error);
        if (error)
            return Error{Filled(text::setup::cannotWrite, {FromPath(file), FromUtf8(error.message())})};
        if (const auto written = content.empty() ? Result<>() : ReplaceWholeFile(file, content); !written)
            return Error{Filled(text::setup::cannotWrite, {FromPath(file), written.Reason().text})};
        report.push_back(
            Filled(content.empty() ? text::setupUnits::removed : text::setupUnits::written, {FromPath(file)}));
        hasChanged = true;
        return {};
    }

    // A system without the program has nothing to tell.
    void Tell(const std::vector<std::string>& command) {
        if (!hasChanged || !places.tellsSystem)
            return;
        std::vector<char*> words;
        KelText line;
        for (const std::string& word : command) {
            words.push_back(const_cast<char*>(word.c_str()));
            line += (line.empty() ? u"" : u" ") + FromUtf8(word);
        }
        words.push_back(nullptr);
        pid_t process = 0;
        if (::posix_spawnp(&process, words.front(), nullptr, nullptr, words.data(), environ) != 0)
            return;
        int status = 0;
        while (::waitpid(process, &status, 0) < 0 && errno == EINTR) {
        }
        if (status != 0)
            report.push_back(Filled(text::setupUnits::commandFailed, {line, ToText(WEXITSTATUS(status))}));
        hasChanged = false;
    }

    bool HasChanged() const { return hasChanged; }
    SetupReport& Report() { return report; }

private:
    const UnitPlaces places;
    SetupReport report;
    bool hasChanged = false;
};

}

Result<SetupReport> WriteUnits(const Installation& installation, const KelText& machineName, const UnitPlaces& places) {
    const DownloadSettings settings = StoreOf(installation, machineName).Load(TarvinApp::FirstSettings()).settings;
    const std::string instance = UnitInstanceOf(ToUtf8(machineName));
    const std::string unit = "tarvindl@" + instance + ".service";
    UnitWriter writer(places);
    std::vector<fs::path> folders = FoldersOf(installation, settings);
    if (std::erase_if(folders, [](const fs::path& folder) { return !FitsOnLine(folder); }) > 0)
        writer.Report().push_back(text::setupUnits::strangeFolder);
    const fs::path dropIn = places.etc / "systemd/system" / (unit + ".d") / "folders.conf";
    if (const auto written = writer.Write(dropIn, FoldersDropIn(folders)); !written)
        return written.Reason();
    if (writer.HasChanged() && places.tellsSystem)
        writer.Report().push_back(Filled(text::setupUnits::takesRestart, {FromUtf8("'" + unit + "'")}));
    writer.Tell({"systemctl", "daemon-reload"});
    const fs::path rules = places.etc / "udev/rules.d" / ("65-tarvindl-" + instance + ".rules");
    const auto device = PortNames(installation.PathsFile()).DeviceOf(settings.port);
    const auto mark = device ? MarkOf(*device) : std::nullopt;
    // What is known of an adapter that is away stands in its rules.
    const bool isAway =
        device && !mark && ReadWholeFile(rules, longestFile).ValueOr("").starts_with("# " + device->string() + "\n");
    if (const auto written = isAway ? Result<>() : writer.Write(rules, mark ? ModemRules(*mark) : std::string());
        !written)
        return written.Reason();
    writer.Tell({"udevadm", "control", "--reload"});
    return std::move(writer.Report());
}

}
