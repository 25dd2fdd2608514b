#pragma once
// Shows and changes the settings of a machine by their names. One thread at a time; blocks for the disk, and as long as
// a lost network drive does.

#include "base/Result.h"
#include "files/Installation.h"
#include "settings/SettingsStore.h"

#include <optional>
#include <vector>

namespace tarvin {

struct NamedValue {
    KelText name;
    KelText value;
};

// The settings file of a machine in the installation.
SettingsStore StoreOf(const Installation& installation, const KelText& machineName);

// Whether the machine has a settings file.
bool IsMachine(const Installation& installation, const KelText& machineName);

// What to tell of a damaged settings file, of which a part still counts. None if it is whole or cannot be read at all.
std::optional<KelText> DamageOfSettings(const Installation& installation, const KelText& machineName);

// All settings as a text profile.
Result<KelText> ShowSettings(const Installation& installation, const KelText& machineName);

// Sets all values or, after a failure, none. The failure names each value that is refused, one on a line, with those
// that are allowed. Makes the settings of a new machine. Gives whether the file has changed.
Result<bool> ChangeSettings(const Installation& installation, const KelText& machineName,
                            const std::vector<NamedValue>& values);

// The change of one word NAME=VALUE.
Result<NamedValue> NamedValueOf(const KelText& word);

}
