#include "logging/LogRecord.h"

namespace tarvin {

LogKind LogRecord::Log() const {
    if (const auto* lost = std::get_if<LinesLost>(&event))
        return lost->log;
    const bool isActivity = std::holds_alternative<ActivityLine>(event) || std::holds_alternative<LastAttempt>(event);
    return isActivity ? LogKind::Activity : LogKind::Comms;
}

std::size_t LogRecord::ByteCount() const {
    std::size_t byteCount = sizeof(LogRecord);
    if (const auto* comms = std::get_if<CommsLine>(&event))
        byteCount += comms->text.size();
    else if (const auto* activity = std::get_if<ActivityLine>(&event))
        byteCount += (activity->statusText.size() + activity->programName.size()) * sizeof(char16_t) +
                     activity->path.native().size() * sizeof(std::filesystem::path::value_type);
    return byteCount;
}

}
