#include "port/DeviceFailurePosix.h"

#include "base/Messages.h"
#include "base/System.h"
#include "port/DeviceRightsPosix.h"

#include <cerrno>
#include <string>

#include <grp.h>
#include <sys/stat.h>

namespace tarvin {

Error DeviceFailure(int error) {
    const bool isGone = error == EIO || error == ENXIO || error == ENODEV;
    return {SystemErrorText(static_cast<unsigned long>(error)), isGone};
}

Error OpenFailure(int error, const std::filesystem::path& path) {
    struct stat file = {};
    // A group that may not open the device itself would be no help.
    if (error != EACCES || ::stat(path.c_str(), &file) != 0 || !GroupMayOpen(file.st_mode))
        return DeviceFailure(error);
    const group* owner = ::getgrgid(file.st_gid);
    const std::string name = owner != nullptr ? owner->gr_name : std::to_string(file.st_gid);
    const KelText words = SystemErrorText(static_cast<unsigned long>(error));
    return {Filled(text::portReason::notInGroup, {words, FromPath(path), FromUtf8(name)})};
}

}
