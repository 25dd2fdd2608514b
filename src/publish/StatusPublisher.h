#pragma once
// Publishes what an engine tells of its machine, in a file that other programs read, and passes everything on to the
// events of the program. A thread of its own writes: the engine waits neither for a disk nor for a lock that is held
// during a write.

#include "engine/EngineEvents.h"
#include "publish/PublishedStatus.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <thread>

namespace tarvin {

class StatusPublisher : public EngineEvents {
public:
    struct Machine {
        KelText name;
        std::filesystem::path installation;
        MachineHolder::Kind kind = MachineHolder::Kind::Window;
    };

    // The shortest time between two writes, and the time after which a folder that refused a file is tried again.
    struct Pace {
        std::chrono::milliseconds betweenWrites{200};
        std::chrono::milliseconds betweenAttempts{60'000};
    };

    // Publishes nothing before the first snapshot. `events` gets every event on the engine's thread. `clock` is the
    // engine's. Both outlive the publisher, and the publisher outlives the engine.
    StatusPublisher(const Machine& machine, EngineEvents& events, const Clock& clock, const Pace& pace);
    StatusPublisher(const Machine& machine, EngineEvents& events, const Clock& clock)
        : StatusPublisher(machine, events, clock, Pace()) {}
    // Finishes.
    ~StatusPublisher() override { Finish(); }
    StatusPublisher(const StatusPublisher&) = delete;
    StatusPublisher& operator=(const StatusPublisher&) = delete;

    // `tell` gets the reason why nothing can be published, once until a write succeeds again. It is called on the
    // writing thread, must return at once, and is not called after Finish.
    void TellProblems(std::function<void(const KelText&)> tell);

    // Removes the file and ends the thread. Blocks for half a second at most; a write that hangs is left behind. Does
    // nothing the second time. Not on the engine's thread.
    void Finish();

    void SnapshotChanged(const EngineSnapshot& snapshot) override;
    void TrafficArrived() override { events.TrafficArrived(); }
    void ShowMessage(const MessageBoxText& box) override { events.ShowMessage(box); }
    void OutageEnded() override { events.OutageEnded(); }
    void SettingsChanged(const DownloadSettings& settings) override;

private:
    struct Shared;

    static void Write(Shared& shared);

    EngineEvents& events;
    // Held by the writing thread too, which may outlive the object.
    const std::shared_ptr<Shared> shared;
    std::thread writer;
};

}
