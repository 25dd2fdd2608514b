#pragma once
// The engine on a fake port, a clock that the test moves and events that are remembered, all on the test's own thread.

#include "engine/Monitor.h"
#include "harness/FakePort.h"
#include "harness/TemporaryFolder.h"
#include "protocol/ProtocolChoice.h"

#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <vector>

#include <doctest/doctest.h>

namespace tarvin::test {

class RecordedEvents : public EngineEvents {
public:
    void SnapshotChanged(const EngineSnapshot& snapshot) override {
        if (statusLines.empty() || statusLines.back() != snapshot.statusLine)
            statusLines.push_back(snapshot.statusLine);
    }
    void TrafficArrived() override { ++trafficWakeUps; }
    void ShowMessage(const MessageBoxText& box) override { boxes.push_back(ToUtf8(box.caption + u": " + box.text)); }
    void SettingsChanged(const DownloadSettings&) override {}

    std::vector<KelText> statusLines;
    std::vector<std::string> boxes;
    int trafficWakeUps = 0;
};

// `ProtocolType` is constructed from ProtocolParts. Protocol itself stands for the one that the settings ask for.
template <typename ProtocolType>
class EngineHarness {
public:
    // `profile` is the content of the settings file, in text form. Passes do not wait for `logFiles` of a test.
    explicit EngineHarness(std::string_view profile = "[Port Settings]\ntransmit delay=0\n",
                           std::unique_ptr<LogFiles> logFiles = nullptr)
        : waitsForLogs(!logFiles) {
        std::filesystem::create_directory(folder / "NC");
        folder.WriteFile("LASER.INI", profile);
        EngineSetup setup = Setup();
        if (logFiles)
            setup.logFiles = std::move(logFiles);
        engine = std::make_unique<Monitor>(std::move(setup), u"LASER");
    }

    static DownloadSettings FirstSettings() {
        if constexpr (requires { ProtocolType::FirstSettings(); })
            return ProtocolType::FirstSettings();
        else
            return {};
    }

    EngineSetup Setup() {
        return {std::make_unique<FakePort>(line),
                clock,
                events,
                [this](const ProtocolParts& parts) {
                    std::unique_ptr<ProtocolType> made;
                    if constexpr (std::is_same_v<ProtocolType, Protocol>)
                        made = MakeProtocol(parts);
                    else
                        made = std::make_unique<ProtocolType>(parts);
                    protocol = made.get();
                    return made;
                },
                folder.Path(),
                FromPath(folder / "NC"),
                FirstSettings()};
    }

    // Loads the settings and opens the port.
    void Open() {
        engine->Load();
        engine->Open();
    }

    // One pass, and the writing of what it has logged: the test's clock would leave the disk behind.
    bool RunPass() {
        const bool isMoreDue = engine->RunPass();
        if (waitsForLogs && !engine->LogOutput().WaitUntilWritten(std::chrono::seconds(20)))
            FAIL("the log is not written");
        return isMoreDue;
    }

    // Runs passes until nothing moves. The clock stands still, apart from the time that writes take.
    void Settle() {
        for (int quiet = 0; quiet < 2; ++quiet) {
            while (RunPass())
                quiet = 0;
        }
    }

    // The bytes arrive; returns what goes out at once.
    std::string Exchange(std::string_view bytes) {
        line.Arrive(bytes);
        Settle();
        return line.TakeSent();
    }

    // Lets the engine work for this long, pass by pass and wait by wait; returns what went out meanwhile.
    std::string Run(Clock::Duration duration) {
        const auto end = clock.Now() + duration;
        std::string sent;
        while (clock.Now() < end) {
            if (!RunPass())
                engine->WaitForWork();
            sent += line.TakeSent();
        }
        return sent;
    }

    // Works until the condition holds; the test fails if it does not within `longest` of the engine's time.
    void RunUntil(const std::function<bool()>& condition, Clock::Duration longest = std::chrono::hours(1)) {
        const auto end = clock.Now() + longest;
        while (!condition()) {
            REQUIRE(clock.Now() < end);
            if (!RunPass())
                engine->WaitForWork();
        }
    }

    void SendText(std::string_view text) { engine->Output().SendText(text); }
    EngineSnapshot Snapshot() const { return engine->Snapshot(); }
    std::string Status() const { return ToUtf8(engine->Snapshot().statusLine); }

    const bool waitsForLogs;
    TemporaryFolder folder;
    ManualClock clock;
    FakeLine line{clock};
    RecordedEvents events;
    ProtocolType* protocol = nullptr; // of the engine
    std::unique_ptr<Monitor> engine;
};

}
