#pragma once
// The settings file of the program under test, written byte by byte: fields of a record may not be known to the
// program's own code, and an older program skips what it does not know. Any thread.

#include <optional>
#include <string>

namespace tarvin::campaign {

// The setting "Check incoming messages", by its value in the settings record.
enum class IncomingCheck { Off = 0, End = 1, Repeat = 2 };

struct CampaignSettings {
    std::string flowControl;
    std::string folder; // of NC files, both ways
    std::string activityLog;
    std::optional<IncomingCheck> check;
};

// A text profile, or with `check` a record. Texts are ASCII.
std::string SettingsBytes(const CampaignSettings& settings);

}
