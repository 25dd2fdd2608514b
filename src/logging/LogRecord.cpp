#include "logging/LogRecord.h"

namespace tarvin {

namespace {

std::size_t ByteCountOf(const KelText& text) {
    return text.size() * sizeof(char16_t);
}

}

LogKind LogRecord::Log() const {
    if (const auto* lost = std::get_if<LinesLost>(&event))
        return lost->log;
    if (std::holds_alternative<HistoryStart>(event) || std::holds_alternative<HistoryRow>(event) ||
        std::holds_alternative<HistorySeen>(event) || std::holds_alternative<HistoryExpiry>(event))
        return LogKind::History;
    const bool isActivity = std::holds_alternative<ActivityLine>(event) || std::holds_alternative<LastAttempt>(event);
    return isActivity ? LogKind::Activity : LogKind::Comms;
}

std::size_t LogRecord::ByteCount() const {
    std::size_t byteCount = sizeof(LogRecord);
    if (const auto* comms = std::get_if<CommsLine>(&event))
        byteCount += comms->text.size();
    else if (const auto* activity = std::get_if<ActivityLine>(&event))
        byteCount += ByteCountOf(activity->statusText) + ByteCountOf(activity->programName) +
                     activity->path.native().size() * sizeof(std::filesystem::path::value_type);
    else if (const auto* row = std::get_if<HistoryRow>(&event))
        byteCount += sizeof(TransferRecord) + ByteCountOf(row->record->machine) + ByteCountOf(row->record->number) +
                     ByteCountOf(row->record->path) + ByteCountOf(row->record->reason) + row->record->sha256.size();
    return byteCount;
}

}
