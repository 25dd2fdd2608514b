#pragma once
// A published status in which every member says something, with names that no document may take as they are.

#include "base/Process.h"
#include "publish/PublishedStatus.h"

#include <memory>

namespace tarvin::test {

inline const Present present = {Clock::TimePoint(std::chrono::hours(100)),
                                SystemTime(std::chrono::hours(24 * 365 * 50))};

inline PublishedStatus PublishedExample() {
    using namespace std::chrono_literals;
    PublishedStatus status;
    status.machine = u"CUT/2 \"\u00E9\"";
    // A byte of a POSIX path that is no UTF-8, and a character that takes a pair.
    status.installation = u"/srv/\xDCFF\xD83D\xDE00";
    status.program = {MachineHolder::Kind::Service, OwnProcessId(), u"tarvindl", ComputerName(), {}, {}};
    status.processStart = ProcessStartMark(OwnProcessId());
    status.programVersion = u"26";
    status.startedAt = present.system - 5h;
    status.changedAt = present.system - 1s;
    status.settings.port = u"COM1";
    status.settings.downloadPath = u"C:\\NC";
    status.settings.attentionMinutes = 7;
    EngineSnapshot& snapshot = status.snapshot;
    snapshot.transferState = TransferState::Downloading;
    snapshot.statusLine = u"Downloading\x01\n";
    snapshot.hasLink = snapshot.hasHadLink = true;
    snapshot.port = u"COM1";
    snapshot.caption = u"LASER 4711";
    snapshot.lamps.holds.xoff = true;
    snapshot.heldSince = present.steady - 90s;
    snapshot.quality = {1, 2, 3};
    TransferProgress progress;
    progress.direction = TransferDirection::ToMachine;
    progress.number = u"4711";
    progress.requestedAt = present.steady - 2min;
    progress.bytesDone = 63;
    progress.bytesTotal = 100;
    progress.linesPerSecond = 12.5;
    snapshot.progress = progress;
    TransferRecord record;
    record.machine = status.machine;
    record.number = u"1000";
    record.direction = TransferDirection::FromMachine;
    record.outcome = TransferOutcome::Failed;
    record.reason = u"the link was lost";
    record.begin = present.system - 2h;
    record.end = present.system - 1h;
    record.lineCount = 17;
    snapshot.recent = std::make_shared<const TransferRecords>(TransferRecords{record});
    return status;
}

}
