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

// What to tell of a settings file of which only a part counts, or nothing. None if it is whole or cannot be read at
// all.
std::optional<KelText> DamageOfSettings(const Installation& installation, const KelText& machineName);
std::optional<KelText> DamageOfSettings(const SettingsStore::LoadResult& loaded, const std::filesystem::path& file);

struct ShownSettings {
    // All settings.
    KelText profile;
    // As DamageOfSettings gives it.
    std::optional<KelText> damage;
};

Result<ShownSettings> ShowSettings(const Installation& installation, const KelText& machineName);

// The failure that ChangeSettings would give once the folders `foldersToMake` are there. Changes nothing.
Result<> TrySettings(const Installation& installation, const KelText& machineName,
                     const std::vector<NamedValue>& values, const std::vector<std::filesystem::path>& foldersToMake);

// Sets all values or, after a failure, none. The failure names each value that is refused, one on a line, with those
// that are allowed. Makes the settings of a new machine. Gives whether the file has changed.
Result<bool> ChangeSettings(const Installation& installation, const KelText& machineName,
                            const std::vector<NamedValue>& values);

// The change of one word NAME=VALUE.
Result<NamedValue> NamedValueOf(const KelText& word);

}
