#pragma once
// The machines that this user can know of: those of an installation, and those whose programs publish their status. Any
// thread. Reads the disk, within bounds whatever the files hold.

#include "publish/PublishedStatus.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace tarvin {

struct KnownMachine {
    enum class Run {
        Running,    // and publishes `status`
        Died,       // published `status`, and did not end in order
        NotRunning, // no program serves the machine
        Unknown     // `problem` says why
    };

    KelText name;
    // Empty if only a file that cannot be read tells of the machine.
    std::filesystem::path installation;
    Run run = Run::NotRunning;
    // Of a program of another computer too, whose run is unknown.
    std::optional<PublishedStatus> status;
    KelText problem;
};

// In the order of their names. With an installation: all machines that have settings there. In any case all that are
// published.
std::vector<KnownMachine> FindMachines(const std::optional<std::filesystem::path>& installation,
                                       const Present& present);

// The machine of this installation, whether or not it has settings.
KnownMachine FindMachine(const std::filesystem::path& installation, const KelText& name, const Present& present);

}
