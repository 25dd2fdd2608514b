#pragma once
// The lock that says that a program serves a machine. Two programs at one machine would both answer its controller.
//
// The lock is on "<machine>.lock" beside the settings file, because the settings file itself is replaced at each save,
// and a lock stays with the file that was replaced. The system drops the lock when the process ends, however it ends;
// the file stays. Names of machines that give the same file name mean the same machine. One thread at a time.

#include "files/NativeFile.h"

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <optional>

namespace tarvin {

// A program that serves a machine.
struct MachineHolder {
    enum class Kind { Window, Service };

    Kind kind = Kind::Window;
    std::uint64_t process = 0;
    KelText user;
    KelText computer;
    // Where the program takes requests to show its window; empty if it takes none.
    KelText raiseAddress;
    // Where the program takes requests to read its settings again; empty if it takes none.
    KelText reloadAddress;

    bool operator==(const MachineHolder&) const = default;
};

class MachineLock {
public:
    // `settingsFile` is the machine's settings file, which may be missing.
    explicit MachineLock(const std::filesystem::path& settingsFile);
    // Releases the lock.
    ~MachineLock();

    // Takes the lock and writes `self` into its file. Does not block. isBusy: another program has the lock. Every other
    // failure means that the folder permits no lock: the machine is then served without one.
    Result<> Take(const MachineHolder& self);

    // The program that holds the lock, as it has described itself. Waits up to `longestWait` for a program that has
    // just taken the lock and still writes. None if the file describes no running program.
    std::optional<MachineHolder> Holder(std::chrono::milliseconds longestWait = std::chrono::seconds(1)) const;
    // The same without a wait.
    std::optional<MachineHolder> HolderNow() const;

private:
    const std::filesystem::path path;
    NativeFile file;
    bool isHeld = false;
    bool isWritable = false;
};

}
