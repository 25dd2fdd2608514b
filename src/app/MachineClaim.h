#pragma once
// Takes a machine for this program, so that no second one serves it.

#include "base/KelText.h"
#include "files/MachineLock.h"

#include <functional>
#include <memory>
#include <optional>

namespace tarvin {

class Program;

// The exit code of a program whose machine another program serves.
inline constexpr int servedElsewhereExitCode = 3;

struct MachineClaim {
    // The lock, to be kept as long as the program serves the machine. Null if another program serves it. Not null, but
    // without effect, where the folder permits no lock; standard error has told so.
    std::unique_ptr<MachineLock> lock;
    // The window that serves the machine has come to the front: this program has nothing left to do.
    bool isRaised = false;
    // Without a lock: the program that serves the machine, if it has said who it is.
    std::optional<MachineHolder> holder;
    // Without a lock and not raised: who serves the machine, and what to do, for a user. Each call speaks the
    // language of that moment.
    std::function<KelText()> problem;
};

// For a service that takes requests to reload at `reloadAddress`. Waits at most 1 s.
MachineClaim ClaimForService(const Program& program, const KelText& reloadAddress);

// For a window that takes requests at these addresses. Raises the window that serves the machine already; waits for a
// window that is just closing. Blocks for 8 s at most.
MachineClaim ClaimForWindow(const Program& program, const KelText& raiseAddress, const KelText& reloadAddress);

}
