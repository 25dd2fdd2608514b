#include "harness/TemporaryFolder.h"
#include "harness/WaitUntil.h"
#include "publish/StatusFile.h"
#include "publish/StatusPublisher.h"

#include <atomic>
#include <cstdlib>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

class ForwardedEvents : public EngineEvents {
public:
    void SnapshotChanged(const EngineSnapshot&) override { ++snapshotCount; }
    void TrafficArrived() override {}
    void ShowMessage(const MessageBoxText&) override {}
    void SettingsChanged(const DownloadSettings&) override { ++settingsCount; }

    int snapshotCount = 0;
    int settingsCount = 0;
};

void SetRuntime(const std::filesystem::path& folder) {
    ::setenv("TARVINDL_RUNTIME", folder.c_str(), 1);
}

EngineSnapshot SnapshotWith(const KelText& statusLine) {
    EngineSnapshot snapshot;
    snapshot.statusLine = statusLine;
    return snapshot;
}

class Published {
public:
    explicit Published(std::filesystem::path file) : file(std::move(file)) {}

    // The status line in the file; empty without a file.
    KelText StatusLine() const {
        const auto status = Read();
        return status ? status->snapshot.statusLine : KelText();
    }

    Result<PublishedStatus> Read() const {
        const auto document = ReadStatusFile(file);
        return document ? FromJson(*document, PresentOf(SteadyClock())) : document.Reason();
    }

    const std::filesystem::path file;
};

}

TEST_CASE("StatusPublisher: the latest snapshot is in the file until the end, and a burst is one write") {
    const TemporaryFolder folder;
    SetRuntime(folder.Path());
    const Published published(folder / StatusFileName(u"LASER", folder.Path()).string());
    ForwardedEvents events;
    const SteadyClock clock;
    {
        StatusPublisher publisher({u"LASER", folder.Path(), MachineHolder::Kind::Service}, events, clock, {1h, 1h});
        DownloadSettings settings;
        settings.port = u"COM7";
        publisher.SettingsChanged(settings);
        publisher.SnapshotChanged(SnapshotWith(u"first"));
        REQUIRE(WaitUntil([&] { return published.StatusLine() == u"first"; }));
        CHECK(published.Read()->settings.port == u"COM7");
        CHECK(StateOfProgram(*published.Read()) == ProgramState::Running);
        // The pace holds these back, and the end does not wait for it.
        for (int count = 0; count < 1000; ++count)
            publisher.SnapshotChanged(SnapshotWith(u"later"));
        CHECK(published.StatusLine() == u"first");
    }
    CHECK_FALSE(std::filesystem::exists(published.file));
    CHECK(events.snapshotCount == 1001);
    CHECK(events.settingsCount == 1);
    {
        StatusPublisher publisher({u"LASER", folder.Path(), MachineHolder::Kind::Service}, events, clock, {1ms, 1h});
        publisher.SnapshotChanged(SnapshotWith(u"first"));
        REQUIRE(WaitUntil([&] { return published.StatusLine() == u"first"; }));
        EngineSnapshot lit = SnapshotWith(u"second");
        lit.lamps.received = true;
        publisher.SnapshotChanged(lit);
        lit.lamps.received = false;
        publisher.SnapshotChanged(lit);
        REQUIRE(WaitUntil([&] { return published.StatusLine() == u"second"; }));
        // A lamp that was lit for a moment does not stay lit.
        CHECK(WaitUntil([&] { return !published.Read()->snapshot.lamps.received; }));
    }
}

TEST_CASE("StatusPublisher: a folder that is missing is told once, and used once it is there") {
    const TemporaryFolder folder;
    SetRuntime(folder / "missing/run");
    const Published published(folder / "missing/run" / StatusFileName(u"LASER", folder.Path()));
    ForwardedEvents events;
    const SteadyClock clock;
    std::atomic<int> toldCount = 0;
    StatusPublisher publisher({u"LASER", folder.Path(), MachineHolder::Kind::Window}, events, clock, {1ms, 5ms});
    publisher.TellProblems([&](const KelText&) { ++toldCount; });
    publisher.SnapshotChanged(SnapshotWith(u"first"));
    REQUIRE(WaitUntil([&] { return toldCount == 1; }));
    // Many more attempts fail meanwhile.
    const auto later = clock.Now() + 100ms;
    REQUIRE(WaitUntil([&] { return clock.Now() > later; }));
    CHECK(toldCount == 1);
    std::filesystem::create_directory(folder / "missing");
    CHECK(WaitUntil([&] { return published.StatusLine() == u"first"; }));
    publisher.Finish();
    CHECK_FALSE(std::filesystem::exists(published.file));
}
