#include "ui/CallPolicy.h"

#include <doctest/doctest.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

const TransferRecord::Time programStart = TransferRecord::Time() + 1000h;

// A policy, and the snapshot and the time that it is shown.
struct Watched {
    std::vector<Call> Look(std::chrono::minutes patience = 5min) { return policy.Look(snapshot, now, patience); }
    std::vector<Call> LookAfter(Clock::Duration time) {
        now += time;
        return Look();
    }

    // A transfer that ends `after` the start of the program.
    void Add(TransferOutcome outcome, TransferDirection direction, const KelText& number,
             std::chrono::system_clock::duration after) {
        auto records = std::make_shared<TransferRecords>(*snapshot.recent);
        TransferRecord record;
        record.number = number;
        record.direction = direction;
        record.outcome = outcome;
        record.reason = outcome == TransferOutcome::Completed ? KelText() : u"Why";
        record.begin = record.end = programStart + after;
        records->push_back(record);
        snapshot.recent = records;
    }

    void Begin() {
        snapshot.progress = TransferProgress();
        snapshot.progress->number = u"4711";
        snapshot.quietSince = now;
    }

    CallPolicy policy{u"LASER", programStart};
    EngineSnapshot snapshot;
    Clock::TimePoint now = Clock::TimePoint() + 1h;
};

std::string Titles(const std::vector<Call>& calls) {
    std::string titles;
    for (const Call& call : calls)
        titles += ToUtf8(call.title) + (call.isUrgent ? "!" : "") + "\n";
    return titles;
}

}

TEST_CASE("CallPolicy: each transfer that ends calls once, but none of an earlier run or cancelled by a user") {
    Watched watched;
    watched.Add(TransferOutcome::Failed, TransferDirection::ToMachine, u"1", -1h);
    CHECK(watched.Look().empty());
    watched.Add(TransferOutcome::Completed, TransferDirection::ToMachine, u"12345678901234567890", 1s);
    watched.Add(TransferOutcome::Cancelled, TransferDirection::ToMachine, u"2", 2s);
    watched.Add(TransferOutcome::Failed, TransferDirection::FromMachine, u"", 3s);
    const auto calls = watched.Look();
    CHECK(Titles(calls) == "LASER: 12345678901234567890 was sent to the machine\n"
                           "LASER: A file was not received completely!\n");
    CHECK(calls.back().text == u"Why");
    CHECK(watched.Look().empty());
    auto seen = *watched.snapshot.recent;
    seen.back().isSeen = true;
    seen.erase(seen.begin());
    watched.snapshot.recent = std::make_shared<TransferRecords>(seen);
    CHECK(watched.Look().empty());
}

TEST_CASE("CallPolicy: a controller that repeats a refused request calls once a minute") {
    Watched watched;
    int callCount = 0;
    for (int second = 0; second < 130; second += 2) {
        watched.Add(TransferOutcome::Refused, TransferDirection::ToMachine, u"9", std::chrono::seconds(second));
        callCount += static_cast<int>(watched.LookAfter(2s).size());
    }
    CHECK(callCount == 3);
    watched.Add(TransferOutcome::Refused, TransferDirection::ToMachine, u"10", 200s);
    CHECK(Titles(watched.Look()) == "LASER: 10 was asked for and could not be sent!\n");
}

TEST_CASE("CallPolicy: a hold and a silence call once each, when they have lasted long enough") {
    Watched watched;
    watched.Begin();
    CHECK(watched.Look().empty());
    CHECK(watched.policy.NextDue() == watched.now + 5min);
    CHECK(watched.LookAfter(5min - 1ms).empty());
    CHECK(Titles(watched.LookAfter(1ms)) ==
          "LASER: 4711 is on its way, and nothing came from the machine for more than 5 min!\n");
    CHECK(watched.LookAfter(1h).empty());
    CHECK(!watched.policy.NextDue());
    // A byte begins another silence; the hold in it is called in its place.
    watched.snapshot.quietSince = watched.now;
    watched.snapshot.heldSince = watched.now + 1s;
    CHECK(watched.LookAfter(5min).empty());
    CHECK(Titles(watched.LookAfter(1s)) == "LASER: 4711 is held by the machine for more than 5 min!\n");
    CHECK(watched.LookAfter(1h).empty());
    watched.snapshot.heldSince = watched.now;
    CHECK(watched.Look(0min).empty());
    CHECK(!watched.policy.NextDue());
    CHECK(watched.LookAfter(5min).size() == 1);
    // Between transfers a machine may be silent as long as it likes.
    watched.snapshot.heldSince = watched.now;
    watched.snapshot.progress->isWaiting = true;
    CHECK(watched.LookAfter(1h).empty());
    watched.snapshot.progress.reset();
    CHECK(watched.LookAfter(1h).empty());
}

TEST_CASE("CallPolicy: a link that is lost for three seconds calls, and its return calls after that only") {
    Watched watched;
    const auto lose = [&] { watched.snapshot.linkLostSince = watched.now; };
    lose();
    CHECK(watched.LookAfter(1h).empty());
    watched.snapshot.hasHadLink = true;
    for (const bool isLong : {false, true}) {
        watched.snapshot.linkLostSince.reset();
        CHECK(watched.Look().empty());
        lose();
        CHECK(watched.LookAfter(2999ms).empty());
        CHECK(watched.policy.NextDue() == watched.now + 1ms);
        if (isLong) {
            CHECK(Titles(watched.LookAfter(1ms)) == "LASER: the link to the machine is lost!\n");
            CHECK(watched.LookAfter(1h).empty());
        }
    }
    watched.snapshot.linkLostSince.reset();
    CHECK(Titles(watched.Look()) == "LASER: the link to the machine is back\n");
    CHECK(watched.Look().empty());
}

}
