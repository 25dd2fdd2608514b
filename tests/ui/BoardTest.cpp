#include "base/Messages.h"
#include "ui/BoardColours.h"
#include "ui/BoardContent.h"
#include "ui/Contrast.h"
#include "ui/StatusLine.h"

#include <algorithm>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::chrono_literals;

namespace {

KelText FixedTime(TransferRecord::Time) {
    return u"14:03";
}

const Clock::TimePoint start{1000s};

EngineSnapshot Running(TransferDirection direction = TransferDirection::ToMachine) {
    EngineSnapshot snapshot;
    snapshot.hasLink = snapshot.hasHadLink = snapshot.isConversation = true;
    snapshot.port = u"COM3";
    TransferProgress progress;
    progress.direction = direction;
    progress.number = u"4711";
    progress.comment = u"(BRACKET LEFT HAND)";
    progress.requestedAt = start;
    progress.bytesDone = 6300;
    progress.bytesTotal = direction == TransferDirection::ToMachine ? 10000 : 0;
    progress.linesDone = 1893;
    progress.linesTotal = direction == TransferDirection::ToMachine ? 3004 : 0;
    progress.linesPerSecond = 14.5;
    progress.bytesPerSecond = 100;
    snapshot.progress = progress;
    snapshot.quietSince = start + 130s;
    return snapshot;
}

TransferRecord Record(KelText number, TransferOutcome outcome,
                      TransferDirection direction = TransferDirection::ToMachine) {
    TransferRecord record;
    record.number = std::move(number);
    record.outcome = outcome;
    record.direction = direction;
    record.end = record.begin + 31s;
    record.byteCount = 8751;
    record.bytesTotal = direction == TransferDirection::ToMachine ? 10000 : 0;
    record.lineCount = 300;
    record.linesTotal = direction == TransferDirection::ToMachine ? 3004 : 0;
    return record;
}

EngineSnapshot After(std::vector<TransferRecord> records) {
    EngineSnapshot snapshot;
    snapshot.hasLink = true;
    snapshot.recent = std::make_shared<const TransferRecords>(std::move(records));
    return snapshot;
}

std::string Spoken(const EngineSnapshot& snapshot, Clock::TimePoint now) {
    std::string spoken = ToUtf8(DescribeBoard(snapshot, now, FixedTime).Spoken());
    // The blanks within numbers break no line.
    for (std::size_t at; (at = spoken.find("\u00A0")) != std::string::npos;)
        spoken.replace(at, 2, "_");
    return spoken;
}

BoardState StateOf(const EngineSnapshot& snapshot, Clock::TimePoint now) {
    return DescribeBoard(snapshot, now, FixedTime).state;
}

bool Says(const std::string& spoken, std::string_view part) {
    return spoken.find(part) != std::string::npos;
}

}

TEST_CASE("Board: a transfer on its way tells how far it is and how long it takes") {
    const Clock::TimePoint now = start + 130s;
    CHECK(Spoken(Running(), now) ==
          "Being sent \u2192 machine. 4711. 63 %. (BRACKET LEFT HAND). Lines: 1_893 of 3_004. "
          "Time: 2:10 gone, about 0:37 left. Speed: 14.5 lines/s, 0 repeats");
    const BoardContent upload = DescribeBoard(Running(TransferDirection::FromMachine), now, FixedTime);
    CHECK(upload.isBarMoving);
    CHECK(upload.share.empty());
    CHECK(Says(ToUtf8(upload.Spoken()), "Being received"));
    EngineSnapshot slow = Running();
    slow.progress->bytesPerSecond = 0;
    CHECK(!Says(Spoken(slow, now), "left"));
    // The last line is sent, and may have to be repeated.
    slow.progress->bytesDone = 10000;
    CHECK(Says(Spoken(slow, now), "99 %"));
}

TEST_CASE("Board: hold, silence and outage are told with their time, in this order of weight") {
    EngineSnapshot snapshot = Running();
    CHECK(StateOf(snapshot, start + 134s) == BoardState::Running);
    CHECK(StateOf(snapshot, start + 145s) == BoardState::Silent);
    CHECK(Says(Spoken(snapshot, start + 145s), "Nothing from the machine for 0:15"));
    snapshot.heldSince = start + 130s;
    snapshot.notice = text::notice::heldByXoff;
    CHECK(StateOf(snapshot, start + 202s) == BoardState::Held);
    CHECK(Says(Spoken(snapshot, start + 202s), "Held by the machine (XOFF) for 1:12"));
    snapshot = After({Record(u"4711", TransferOutcome::Failed)});
    snapshot.hasLink = false;
    snapshot.hasHadLink = true;
    snapshot.port = u"COM3";
    snapshot.linkLostSince = start;
    CHECK(StateOf(snapshot, start + 42s) == BoardState::NoLink);
    CHECK(Says(Spoken(snapshot, start + 42s), "COM3 is gone, tried each second, for 0:42"));
    CHECK(Says(Spoken(snapshot, start + 42s), "Failed and not seen: 4711"));
    // A machine that only takes bytes is silent by nature.
    snapshot = Running();
    snapshot.isConversation = false;
    CHECK(StateOf(snapshot, start + 1h) == BoardState::Running);
}

TEST_CASE("Board: a failure stays until it is seen, and says what the machine has") {
    TransferRecord failed = Record(u"4711", TransferOutcome::Failed);
    failed.reason = u"the port was lost";
    EngineSnapshot snapshot = After({failed, Record(u"4712", TransferOutcome::Completed)});
    CHECK(Spoken(snapshot, start)
              .starts_with("FAILED at line 300 of 3_004, at 14:03. 4711. 87 %. Why: the port was "
                           "lost. Machine has: a part of it: do not cut"));
    REQUIRE(DescribeBoard(snapshot, start, FixedTime).unseen);
    CHECK(DescribeBoard(snapshot, start, FixedTime).unseen->number == u"4711");
    failed.isSeen = true;
    snapshot = After({failed, Record(u"4712", TransferOutcome::Completed)});
    CHECK(StateOf(snapshot, start) == BoardState::Done);
    CHECK(!DescribeBoard(snapshot, start, FixedTime).unseen);
    // An upload that failed has left the machine what it had.
    snapshot = After({Record(u"5", TransferOutcome::Failed, TransferDirection::FromMachine)});
    CHECK(Says(Spoken(snapshot, start), "Machine has: its program, as before"));
    // A refused request leaves with the next request.
    TransferRecord refused = Record(u"999", TransferOutcome::Refused);
    refused.reason = u"there is no such file";
    CHECK(StateOf(After({refused}), start) == BoardState::Failed);
    CHECK(!DescribeBoard(After({refused}), start, FixedTime).unseen);
    CHECK(StateOf(After({refused, Record(u"4712", TransferOutcome::Completed)}), start) == BoardState::Done);
    CHECK(Says(Spoken(After({refused}), start), "14:03  999 \u2192 machine  refused: there is no such file"));
}

TEST_CASE("StatusLine: the line quality stands beside a status, and leaves its room to the reason of a failure") {
    TransferRecord failed = Record(u"4711", TransferOutcome::Failed);
    failed.repeats = 3;
    EngineSnapshot snapshot = After({failed});
    snapshot.quality.repeats = 3;
    snapshot.statusLine = u"status: reason";
    snapshot.transferState = TransferState::DownloadCompleted;
    CHECK(StatusText(snapshot) == u"status: reason - " + DescribeQuality(snapshot.quality));
    for (const TransferState state : {TransferState::DownloadErrors, TransferState::UploadErrors}) {
        snapshot.transferState = state;
        CHECK(StatusText(snapshot) == u"status: reason");
    }
    CHECK(Says(Spoken(snapshot, start), "Speed: 3 repeats, 0 damaged"));
}

TEST_CASE("Board: durations and large numbers are easy to read") {
    CHECK(DurationText(31s) == u"0:31");
    CHECK(DurationText(727s) == u"12:07");
    CHECK(DurationText(3723s) == u"1:02:03");
    CHECK(DurationText(-5s) == u"0:00");
    CHECK(GroupedText(999) == u"999");
    CHECK(GroupedText(1234567) == u"1\u00A0234\u00A0567");
    CHECK(GroupedText(-1234) == u"-1\u00A0234");
}

TEST_CASE("Board: every text and sign stands out from its ground in light and dark") {
    for (const bool isDark : {false, true}) {
        for (const BoardState state : {BoardState::Idle, BoardState::Running, BoardState::Done, BoardState::Held,
                                       BoardState::Silent, BoardState::Failed, BoardState::NoLink}) {
            CAPTURE(isDark);
            CAPTURE(static_cast<int>(state));
            const BoardColours& colours = ColoursOf(state, isDark);
            for (const Rgb text : {colours.text, colours.faint, colours.edge})
                CHECK(Contrast(ToColour(text), ToColour(colours.ground)) >= 4.5);
            CHECK(Contrast(ToColour(colours.edge), ToColour(colours.track)) >= 3);
            for (const TransferOutcome outcome : {TransferOutcome::Completed, TransferOutcome::Failed,
                                                  TransferOutcome::Cancelled, TransferOutcome::Refused})
                CHECK(Contrast(ToColour(SignColour(outcome, isDark)), ToColour(colours.ground)) >= 3);
        }
    }
}
