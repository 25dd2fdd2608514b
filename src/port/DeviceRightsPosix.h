#pragma once
// Who may open a device, and what to do for a user who may not.

#include "base/KelText.h"
#include "port/PortReport.h"

#include <filesystem>

#include <sys/types.h>

namespace tarvin {

struct DeviceRights {
    KelText device;
    mode_t mode = 0;
    KelText group;
    bool isGroupOfRoot = false;
    KelText user;
    // The system's list of groups names the user.
    bool isMember = false;
    // This process has the group. A new member gets it with the next login.
    bool hasGroup = false;
};

// The rights of this user. The user data base may lie on a server, and then blocks.
DeviceRights RightsOf(const std::filesystem::path& device);

// Advises the group only if the group may open the device, and never the group of root.
PortAdvice AdviceFor(const DeviceRights& rights);

// Whether the mode of a device lets its group read and write.
bool GroupMayOpen(mode_t mode);

// The text as one word of a shell.
KelText ShellWord(KelTextView text);

}
