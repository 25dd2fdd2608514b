#include "base/WindowsApi.h"
#include "history/NetworkDrive.h"

namespace tarvin {

bool IsOnNetworkDrive(const std::filesystem::path& folder) {
    // A folder may be the place where another volume, or a share, is mounted.
    wchar_t root[MAX_PATH + 1] = L"";
    if (!::GetVolumePathNameW(folder.c_str(), root, MAX_PATH + 1))
        return true;
    const UINT kind = ::GetDriveTypeW(root);
    return kind != DRIVE_FIXED && kind != DRIVE_REMOVABLE && kind != DRIVE_RAMDISK && kind != DRIVE_CDROM;
}

}
