#include "engine/TransferRate.h"
#include "harness/EngineHarness.h"
#include "harness/Transcript.h"
#include "protocol/TarvinApp.h"

#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

constexpr char profile[] = "[Port Settings]\ntransmit delay=0\n[Files]\nfile extension=nc\n";

struct Machine : EngineHarness<TarvinApp> {
    Machine() : EngineHarness(profile) {
        folder.WriteFile("NC/4711.nc", "%\nO4711 (BRACKET)\n\nN10 G00\nN20 G01\n");
        Open();
    }

    std::string Say(const std::string& text) { return Exchange(Message(text)); }
    // What a window shows after the next tick of the display.
    EngineSnapshot Shown() {
        Run(600ms);
        return Snapshot();
    }
    const TransferRecord& Last() const {
        records = Snapshot().recent;
        REQUIRE(!records->empty());
        return records->back();
    }
    std::size_t Count() const { return Snapshot().recent->size(); }

    mutable std::shared_ptr<const TransferRecords> records;
};

}

TEST_CASE("Monitor: each transfer that ends leaves one record, and so does each refused request") {
    Machine machine;
    machine.Say("ABTS");
    CHECK(machine.Count() == 0);
    machine.Say("ABSE4711");
    REQUIRE(machine.Shown().progress);
    CHECK(machine.Snapshot().progress->comment == u"(BRACKET)");
    CHECK(machine.Snapshot().progress->linesTotal == 5);
    for (int line = 0; line < 4; ++line)
        machine.Say("ABAK");
    REQUIRE(machine.Count() == 1);
    CHECK(machine.Last().outcome == TransferOutcome::Completed);
    CHECK(machine.Last().machine == u"LASER");
    CHECK(machine.Last().number == u"4711");
    CHECK(machine.Last().lineCount == 5);
    // The file as it is on the disk, with LF ends and an empty line.
    CHECK(machine.Last().byteCount == 35);
    CHECK(machine.Last().bytesTotal == 35);
    CHECK(!machine.Snapshot().progress);

    // The third refusal of a line ends it.
    machine.Say("ABSE4711");
    machine.Say("ABAK");
    for (int attempt = 0; attempt < 3; ++attempt)
        machine.Say("ABNK");
    REQUIRE(machine.Count() == 2);
    CHECK(machine.Last().outcome == TransferOutcome::Failed);
    CHECK(machine.Last().reason == text::transferReason::lineRefused);
    CHECK(machine.Last().lineCount == 2);
    CHECK(machine.Last().byteCount == 18);
    CHECK(machine.Last().repeats == 3);

    // A message that is no answer ends it too, for a reason of its own.
    machine.Say("ABSE4711");
    machine.Say("AB");
    REQUIRE(machine.Count() == 3);
    CHECK(machine.Last().outcome == TransferOutcome::Failed);
    CHECK(machine.Last().reason == text::transferReason::damagedMessage);

    machine.Say("ABSE999");
    REQUIRE(machine.Count() == 4);
    CHECK(machine.Last().outcome == TransferOutcome::Refused);
    CHECK(machine.Last().reason == text::transferReason::noSuchFile);

    machine.Say("ABST5");
    machine.Say("ABADN1 (COVER)");
    REQUIRE(machine.Shown().progress);
    CHECK(machine.Snapshot().progress->comment == u"(COVER)");
    // A link test gives the upload up.
    machine.Say("ABTS");
    REQUIRE(machine.Count() == 5);
    CHECK(machine.Last().outcome == TransferOutcome::Failed);
    CHECK(machine.Last().direction == TransferDirection::FromMachine);
    CHECK(machine.Last().reason == text::transferReason::linkTested);
    CHECK(machine.Last().byteCount == 12);

    // A refused request does not stand for the download that waits meanwhile.
    DownloadSettings delayed = machine.engine->Settings();
    delayed.transmitDelaySeconds = 5;
    machine.engine->KeepSettings(delayed);
    machine.Say("ABSE4711");
    machine.Say("ABST..");
    REQUIRE(machine.Count() == 6);
    CHECK(machine.Last().outcome == TransferOutcome::Refused);
    CHECK(machine.Last().number == u"..");
    REQUIRE(machine.Shown().progress);
    CHECK(machine.Snapshot().progress->isWaiting);
    machine.line.isPresent = false;
    machine.Run(1s);
    REQUIRE(machine.Count() == 7);
    CHECK(machine.Last().outcome == TransferOutcome::Failed);
    CHECK(machine.Last().number == u"4711");
    CHECK(machine.Snapshot().linkLostSince);
}

TEST_CASE("Display: a failure stays until it is seen, or made good by the same file in the same direction") {
    Machine machine;
    const auto fail = [&] {
        machine.Say("ABSE4711");
        machine.Say("ABTS");
        CHECK(!machine.Last().isSeen);
    };
    const auto areSeen = [&] {
        for (const TransferRecord& record : *machine.Snapshot().recent) {
            if (record.outcome == TransferOutcome::Failed && !record.isSeen)
                return false;
        }
        return true;
    };
    fail();
    machine.Say("ABTS");
    machine.Say("ABST4711");
    machine.Say("ABADN1");
    machine.Say("ABEF");
    CHECK(machine.Last().outcome == TransferOutcome::Completed);
    CHECK(!areSeen());
    machine.Say("ABSE4711");
    machine.Say("ABAK");
    CHECK(machine.Last().direction == TransferDirection::ToMachine);
    CHECK(machine.Last().outcome == TransferOutcome::Completed);
    CHECK(areSeen());
    fail();
    machine.engine->Shown().MarkSeen(u"4711", TransferDirection::FromMachine);
    CHECK(!areSeen());
    machine.engine->Shown().MarkSeen(u"4711", TransferDirection::ToMachine);
    CHECK(areSeen());
    // Many others do not push an unseen failure out.
    fail();
    for (int request = 0; request < 60; ++request)
        machine.Say("ABSE999");
    CHECK(!areSeen());
    CHECK(machine.Count() <= 21);
}

TEST_CASE("TransferRate: the last thirty seconds count") {
    TransferRate rate;
    Clock::TimePoint now{1h};
    rate.Add(now, 0, 0);
    CHECK(!rate.LinesPerSecond());
    for (int tick = 0; tick < 100; ++tick)
        rate.Add(now += 100ms, tick, tick * 10);
    CHECK(*rate.LinesPerSecond() == doctest::Approx(9.9));
    CHECK(*rate.BytesPerSecond() == doctest::Approx(99));
    // A hold slows it down, and after 30 s nothing is left of the time before.
    for (int tick = 0; tick < 320; ++tick)
        rate.Add(now += 100ms, 99, 990);
    CHECK(*rate.LinesPerSecond() == doctest::Approx(0));
    rate.Reset();
    CHECK(!rate.LinesPerSecond());
}
