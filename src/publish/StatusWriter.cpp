// The published status as a document.

#include "history/HistoryWords.h"
#include "publish/JsonWriter.h"
#include "publish/PublishedStatus.h"
#include "publish/StatusFile.h"
#include "publish/StatusForm.h"

#include <algorithm>

namespace tarvin {

namespace {

class Writer {
public:
    explicit Writer(const Present& present) : present(present) {}

    std::string Write(const PublishedStatus& status, std::size_t mostRecords) {
        const EngineSnapshot& snapshot = status.snapshot;
        json.BeginObject();
        json.AddText("format", statusFormName);
        json.AddNumber("version", statusFormVersion);
        AddText("machine", status.machine);
        AddText("installation", status.installation);
        AddProgram(status);
        AddTime("changed", status.changedAt);
        AddSettings(status.settings);
        AddLink(snapshot);
        json.AddNumber("state", static_cast<std::int64_t>(snapshot.transferState));
        AddText("status", snapshot.statusLine);
        AddText("notice", snapshot.notice);
        AddText("announcement", snapshot.announcement);
        AddText("caption", snapshot.caption);
        AddLine(snapshot);
        AddTransfer(snapshot);
        json.AddNumber("bar_position", snapshot.progressPosition);
        json.AddNumber("bar_range", snapshot.progressRange);
        AddText("last_path", snapshot.transferPath);
        json.AddFlag("asks_by_number", snapshot.isConversation);
        json.AddFlag("comms_log", snapshot.isCommsLogOn);
        AddRecent(*snapshot.recent, mostRecords);
        json.EndObject();
        return json.Document() + '\n';
    }

private:
    void AddText(std::string_view name, KelTextView text) { json.AddText(name, text.substr(0, longestStatusText)); }

    void AddTime(std::string_view name, SystemTime time) { json.AddText(name, FromUtf8(ToUtcText(time))); }

    void AddTime(std::string_view name, const std::optional<Clock::TimePoint>& time) {
        if (time)
            AddTime(name, present.system - std::chrono::duration_cast<SystemTime::duration>(present.steady - *time));
        else
            json.AddNull(name);
    }

    void AddProgram(const PublishedStatus& status) {
        json.BeginObject("program");
        json.AddText("kind", status.program.kind == MachineHolder::Kind::Service ? serviceWord : windowWord);
        AddText("version", status.programVersion);
        json.AddNumber("process", static_cast<std::int64_t>(status.program.process));
        AddText("process_start", status.processStart);
        AddText("user", status.program.user);
        AddText("computer", status.program.computer);
        AddTime("started", status.startedAt);
        json.EndObject();
    }

    void AddSettings(const DownloadSettings& settings) {
        json.BeginObject("settings");
        for (const auto& [name, field] : settingsTexts)
            AddText(name, settings.*field);
        json.AddFlag("cts_handshake", settings.ctsFlow != 0);
        json.AddFlag("dsr_handshake", settings.dsrFlow != 0);
        json.AddFlag("by_hand", IsByHand(settings));
        json.AddNumber("attention_minutes", settings.attentionMinutes);
        json.EndObject();
    }

    void AddLink(const EngineSnapshot& snapshot) {
        json.BeginObject("link");
        json.AddFlag("is_open", snapshot.hasLink);
        json.AddFlag("was_open", snapshot.hasHadLink);
        AddText("port", snapshot.port);
        AddText("title", snapshot.linkTitle);
        AddTime("lost_since", snapshot.linkLostSince);
        json.EndObject();
    }

    void AddLine(const EngineSnapshot& snapshot) {
        const LineHolds& holds = snapshot.lamps.holds;
        json.BeginObject("line");
        json.AddFlag("received", snapshot.lamps.received);
        json.AddFlag("transmitted", snapshot.lamps.transmitted);
        json.AddFlag("cts_hold", holds.cts);
        json.AddFlag("dsr_hold", holds.dsr);
        json.AddFlag("rls_hold", holds.rlsd);
        json.AddFlag("xoff_hold", holds.xoff);
        json.AddFlag("xoff_sent", holds.xoffSent);
        AddTime("held_since", snapshot.heldSince);
        AddTime("quiet_since", snapshot.quietSince);
        json.AddNumber("damaged", snapshot.quality.damaged);
        json.AddNumber("repeats", snapshot.quality.repeats);
        json.AddNumber("driver_errors", snapshot.quality.driverErrors);
        json.EndObject();
    }

    void AddTransfer(const EngineSnapshot& snapshot) {
        if (!snapshot.progress) {
            json.AddNull("transfer");
            return;
        }
        const TransferProgress& progress = *snapshot.progress;
        json.BeginObject("transfer");
        json.AddText("direction", WordsFor(progress.direction));
        json.AddFlag("is_waiting", progress.isWaiting);
        AddText("number", progress.number);
        AddText("path", progress.path);
        AddText("comment", progress.comment);
        AddTime("begin", std::optional(progress.requestedAt));
        json.AddNumber("bytes", progress.bytesDone);
        json.AddNumber("bytes_total", progress.bytesTotal);
        json.AddNumber("lines", progress.linesDone);
        json.AddNumber("lines_total", progress.linesTotal);
        if (progress.bytesTotal > 0)
            json.AddNumber("percent", PercentOf(progress));
        else
            json.AddNull("percent");
        json.AddRate("bytes_per_second", progress.bytesPerSecond);
        json.AddRate("lines_per_second", progress.linesPerSecond);
        json.EndObject();
    }

    void AddRecent(const TransferRecords& records, std::size_t mostRecords) {
        json.AddNumber("failures_not_seen",
                       std::count_if(records.begin(), records.end(),
                                     [](const TransferRecord& record) { return record.IsUnseenFailure(); }));
        json.BeginArray("recent");
        const std::size_t count = std::min(records.size(), mostRecords);
        for (auto record = records.end() - static_cast<std::ptrdiff_t>(count); record != records.end(); ++record)
            AddRecord(*record);
        json.EndArray();
    }

    void AddRecord(const TransferRecord& record) {
        json.BeginObject();
        AddText("number", record.number);
        AddText("path", record.path);
        json.AddText("direction", WordsFor(record.direction));
        json.AddText("outcome", WordFor(record.outcome));
        AddText("reason", record.reason);
        AddTime("begin", record.begin);
        AddTime("end", record.end);
        for (const auto& [name, field] : recordNumbers)
            json.AddNumber(name, record.*field);
        AddText("sha256", FromUtf8(record.sha256));
        json.AddFlag("seen", record.isSeen);
        json.EndObject();
    }

    const Present present;
    JsonWriter json;
};

}

Present PresentOf(const Clock& clock) {
    return {clock.Now(), std::chrono::system_clock::now()};
}

std::int64_t PercentOf(const TransferProgress& progress) {
    const auto share = static_cast<double>(progress.bytesDone) / static_cast<double>(progress.bytesTotal);
    // Only the end itself is 100 %.
    return static_cast<std::int64_t>(std::clamp(share * 100, 0.0, 99.0));
}

std::string ToJson(const PublishedStatus& status, const Present& present) {
    std::size_t mostRecords = mostPublishedRecords;
    std::string document = Writer(present).Write(status, mostRecords);
    while (document.size() > longestStatusFile && mostRecords > 0) {
        mostRecords /= 2;
        document = Writer(present).Write(status, mostRecords);
    }
    return document;
}

}
