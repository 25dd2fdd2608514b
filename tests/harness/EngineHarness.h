#pragma once
// An engine on a fake port, a clock that the test moves and a window that remembers; all on the test's own thread.

#include "base/Clock.h"
#include "engine/DownloadApp.h"
#include "harness/FakePort.h"
#include "harness/TemporaryFolder.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <doctest/doctest.h>

namespace tarvin::test {

class RecordingWindow : public DownloadWindow {
public:
    void SnapshotChanged(const EngineSnapshot& snapshot) override {
        if (statusLines.empty() || statusLines.back() != snapshot.statusLine)
            statusLines.push_back(snapshot.statusLine);
    }
    void TrafficArrived() override { ++trafficWakeUps; }
    void ShowMessage(const MessageBoxText& box) override { boxes.push_back(ToUtf8(box.caption + u": " + box.text)); }
    void DrawAttention() override { ++attentionCalls; }

    std::vector<KelText> statusLines;
    std::vector<std::string> boxes;
    int trafficWakeUps = 0;
    int attentionCalls = 0;
};

// `Engine` is DownloadApp or derived from it.
template <typename Engine>
class EngineHarness {
public:
    // `profile` is what stands in the settings file, in text form.
    explicit EngineHarness(std::string_view profile = "[Port Settings]\ntransmit delay=0\n") {
        std::filesystem::create_directory(folder / "NC");
        folder.WriteFile("LASER.INI", profile);
        engine = std::make_unique<Engine>(
            EngineSetup{std::make_unique<FakePort>(line), clock, window, folder.Path(), FromPath(folder / "NC")},
            u"LASER");
    }

    // Loads the settings and opens the port.
    void Create() { engine->Create(); }

    // Passes until nothing moves any more; the clock stands still but for what writes cost.
    void Settle() {
        for (int quiet = 0; quiet < 2; ++quiet) {
            while (engine->RunPass())
                quiet = 0;
        }
    }

    // The bytes come in; what goes out at once.
    std::string Exchange(std::string_view bytes) {
        line.Arrive(bytes);
        Settle();
        return line.TakeSent();
    }

    // The engine lives on, pass by pass and wait by wait, for this long; what went out meanwhile.
    std::string Run(Clock::Duration duration) {
        const auto end = clock.Now() + duration;
        std::string sent;
        while (clock.Now() < end) {
            if (!engine->RunPass())
                engine->WaitForWork();
            sent += line.TakeSent();
        }
        return sent;
    }

    // Until the condition holds; the test fails if it does not within `longest` of the engine's time.
    void RunUntil(const std::function<bool()>& condition, Clock::Duration longest = std::chrono::hours(1)) {
        const auto end = clock.Now() + longest;
        while (!condition()) {
            REQUIRE(clock.Now() < end);
            if (!engine->RunPass())
                engine->WaitForWork();
        }
    }

    EngineSnapshot Snapshot() const { return engine->Snapshot(); }
    std::string Status() const { return ToUtf8(engine->Snapshot().statusLine); }

    TemporaryFolder folder;
    ManualClock clock;
    FakeLine line{clock};
    RecordingWindow window;
    std::unique_ptr<Engine> engine;
};

}
