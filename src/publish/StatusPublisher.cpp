#include "publish/StatusPublisher.h"

#include "base/Mutex.h"
#include "base/Process.h"
#include "base/PublishMessages.h"
#include "base/Version.h"
#include "publish/RuntimeFolders.h"
#include "publish/StatusFile.h"

#include <system_error>
#include <utility>

namespace tarvin {

namespace {

using namespace std::chrono_literals;

constexpr auto longestFinish = 500ms;

// A change of the other settings writes nothing.
DownloadSettings PublishedPartOf(const DownloadSettings& settings) {
    DownloadSettings part;
    part.port = settings.port;
    part.baudRate = settings.baudRate;
    part.parity = settings.parity;
    part.dataBits = settings.dataBits;
    part.stopBits = settings.stopBits;
    part.flowControl = settings.flowControl;
    part.uploadPath = settings.uploadPath;
    part.downloadPath = settings.downloadPath;
    part.fileExtension = settings.fileExtension;
    part.ctsFlow = settings.ctsFlow;
    part.dsrFlow = settings.dsrFlow;
    part.controllerKind = settings.controllerKind;
    part.attentionMinutes = settings.attentionMinutes;
    return part;
}

}

struct StatusPublisher::Shared {
    explicit Shared(const Clock& clock, const Pace& pace) : clock(clock), pace(pace) {}

    const Clock& clock;
    const Pace pace;
    std::filesystem::path fileName;

    Mutex mutex;
    Condition changed;
    PublishedStatus latest GUARDED_BY(mutex);
    // Bytes have passed since the last write. A lamp is lit for less than the time between two writes.
    bool hasReceived GUARDED_BY(mutex) = false;
    bool hasTransmitted GUARDED_BY(mutex) = false;
    bool hasSnapshot GUARDED_BY(mutex) = false;
    bool isDirty GUARDED_BY(mutex) = false;
    // The writer waits for the next change. Otherwise it looks by itself when its time has come, and is not woken.
    bool isWaiting GUARDED_BY(mutex) = false;
    bool isClosing GUARDED_BY(mutex) = false;
    bool isDone GUARDED_BY(mutex) = false;
    std::function<void(const KelText&)> tell GUARDED_BY(mutex);

    void NoteChange() REQUIRES(mutex) {
        isDirty = true;
        if (isWaiting)
            changed.NotifyAll();
    }
};

StatusPublisher::StatusPublisher(const Machine& machine, EngineEvents& events, const Clock& clock, const Pace& pace)
    : events(events), shared(std::make_shared<Shared>(clock, pace)) {
    shared->fileName = StatusFileName(machine.name, machine.installation);
    {
        const MutexLock lock(shared->mutex);
        PublishedStatus& status = shared->latest;
        status.machine = machine.name;
        status.installation = FromPath(WholePath(machine.installation));
        status.program = {machine.kind, OwnProcessId(), UserName(), ComputerName(), {}, {}};
        status.processStart = ProcessStartMark(OwnProcessId());
        status.programVersion = FromUtf8(programVersion);
        status.startedAt = std::chrono::system_clock::now();
    }
    writer = std::thread([kept = shared] { Write(*kept); });
}

void StatusPublisher::TellProblems(std::function<void(const KelText&)> tell) {
    const MutexLock lock(shared->mutex);
    shared->tell = std::move(tell);
}

void StatusPublisher::Finish() {
    if (!writer.joinable())
        return;
    const auto deadline = std::chrono::steady_clock::now() + longestFinish;
    bool isDone = false;
    {
        const MutexLock lock(shared->mutex);
        shared->tell = {};
        shared->isClosing = true;
        shared->changed.NotifyAll();
        while (!shared->isDone && shared->changed.WaitUntil(shared->mutex, deadline))
            continue;
        isDone = shared->isDone;
    }
    if (isDone)
        writer.join();
    else
        writer.detach();
}

void StatusPublisher::SnapshotChanged(const EngineSnapshot& snapshot) {
    {
        const MutexLock lock(shared->mutex);
        shared->latest.snapshot = snapshot;
        shared->hasReceived |= snapshot.lamps.received;
        shared->hasTransmitted |= snapshot.lamps.transmitted;
        shared->hasSnapshot = true;
        shared->NoteChange();
    }
    events.SnapshotChanged(snapshot);
}

void StatusPublisher::SettingsChanged(const DownloadSettings& settings) {
    {
        const MutexLock lock(shared->mutex);
        DownloadSettings part = PublishedPartOf(settings);
        if (part != shared->latest.settings) {
            shared->latest.settings = std::move(part);
            shared->NoteChange();
        }
    }
    events.SettingsChanged(settings);
}

// The writing thread. It waits without a time limit while nothing changes, so an idle program wakes no processor.
void StatusPublisher::Write(Shared& shared) {
    std::filesystem::path written; // empty: no file of ours is there
    bool isProblemTold = false;
    auto notBefore = std::chrono::steady_clock::now();
    for (;;) {
        PublishedStatus status;
        Present present;
        {
            const MutexLock lock(shared.mutex);
            shared.isWaiting = true;
            while (!shared.isClosing && !(shared.isDirty && shared.hasSnapshot))
                shared.changed.Wait(shared.mutex);
            shared.isWaiting = false;
            while (!shared.isClosing && shared.changed.WaitUntil(shared.mutex, notBefore))
                continue;
            if (shared.isClosing)
                break;
            // Now: the clock may be gone after a write that has hung.
            present = PresentOf(shared.clock);
            status = shared.latest;
            status.changedAt = present.system;
            status.snapshot.lamps.received = std::exchange(shared.hasReceived, status.snapshot.lamps.received);
            status.snapshot.lamps.transmitted = std::exchange(shared.hasTransmitted, status.snapshot.lamps.transmitted);
            // A lamp that the document shows lit, and that has gone out, is a change for the next write.
            shared.isDirty = status.snapshot.lamps != shared.latest.snapshot.lamps;
        }
        Result<> result;
        const auto folder = RuntimeFolderToWrite();
        if (folder)
            result = WriteStatusFile(*folder / shared.fileName, ToJson(status, present));
        else
            result = folder.Reason();
        const MutexLock lock(shared.mutex);
        if (result) {
            written = *folder / shared.fileName;
            isProblemTold = false;
        } else {
            shared.isDirty = true;
            if (!std::exchange(isProblemTold, true) && shared.tell)
                shared.tell(Filled(text::publish::notPublished, {result.Reason().text}));
        }
        notBefore =
            std::chrono::steady_clock::now() + (result ? shared.pace.betweenWrites : shared.pace.betweenAttempts);
    }
    std::error_code ignored;
    if (!written.empty())
        std::filesystem::remove(written, ignored);
    const MutexLock lock(shared.mutex);
    shared.isDone = true;
    shared.changed.NotifyAll();
}

}
