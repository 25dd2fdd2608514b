#pragma once
// Collects what is logged during a pass, each event with its time. Touches no file. Monitor thread only.

#include "logging/LogRecord.h"

#include <string_view>
#include <utility>
#include <vector>

namespace tarvin {

class LogLines {
public:
    explicit LogLines(const Clock& clock) : clock(clock) {}

    // Whether the comms log takes lines. Lines that come while it is off are ignored.
    bool IsCommsLogOn() const { return isCommsLogOn; }
    void SwitchCommsLog(bool isOn) { isCommsLogOn = isOn; }

    // A line of the comms log, as in CommsLine.
    void LogLine(std::string_view text, bool force) {
        if (isCommsLogOn && !text.empty())
            Add(CommsLine{std::string(text), force});
    }
    template <class Event>
    void Add(Event event) {
        LogRecord& record = records.emplace_back();
        record.time = clock.Now();
        record.event = std::move(event);
    }

    // The events since the records were last emptied, oldest first. The caller takes them out.
    std::vector<LogRecord>& Records() { return records; }

private:
    const Clock& clock;
    bool isCommsLogOn = false;
    std::vector<LogRecord> records;
};

}
