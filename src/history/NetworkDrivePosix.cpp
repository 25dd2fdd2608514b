#include "history/NetworkDrive.h"

#include <algorithm>
#include <iterator>

#include <sys/vfs.h>

namespace tarvin {

bool IsOnNetworkDrive(const std::filesystem::path& folder) {
    // NFS, SMB (three drivers in turn), FUSE, 9P, AFS (two), Coda, Ceph, OCFS2, GFS2, Lustre. FUSE may be a local drive
    // too, such as a stick with NTFS; the slower journal is right there as well.
    constexpr unsigned long networked[] = {0x6969,     0x517B,     0xFF534D42, 0xFE534D42, 0x65735546,
                                           0x01021997, 0x5346414F, 0x6B414653, 0x73757245, 0x00C36400,
                                           0x7461636F, 0x01161970, 0x0BD00BD0};
    struct statfs system = {};
    if (::statfs(folder.c_str(), &system) != 0)
        return true;
    // The numbers have 32 bits; some systems extend the sign.
    const unsigned long kind = static_cast<unsigned long>(system.f_type) & 0xFFFFFFFF;
    return std::find(std::begin(networked), std::end(networked), kind) != std::end(networked);
}

}
