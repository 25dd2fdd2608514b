#pragma once
// A text profile (sections of key=value lines), read by the rules of the Windows private-profile calls, so that a file
// means the same on every system. Knows nothing of what is in it.
// Immutable once made: any thread.

#include "base/KelText.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace tarvin {

class Profile {
public:
    // The longest text that a caller gets who does not ask for more, in code units.
    static constexpr std::size_t usualMaxUnits = 79;

    // No profile is longer.
    static constexpr std::size_t maxFileBytes = 1024 * 1024;

    struct Entry {
        KelText key;
        KelText value;
    };

    // Takes any bytes, as ProfileText does; what is no profile has no sections.
    explicit Profile(std::string_view fileBytes);
    // None if the file cannot be read or is too long.
    static std::optional<Profile> Read(const std::filesystem::path& file);

    // Names of sections and keys are compared without case. Of several with one name the first counts.
    bool HasSection(KelTextView section) const;
    // As they stand in the file, those of a name that came before included. Valid as long as the profile.
    std::span<const Entry> Entries(KelTextView section) const;

    // The value, cut to `maxUnits` but never within a surrogate pair; `defaultText` as it is if there is no such key.
    KelText Text(KelTextView section, KelTextView key, KelTextView defaultText,
                 std::size_t maxUnits = usualMaxUnits) const;

    // The number at the beginning of the value, 0 if there is none, modulo 2^32; `defaultNumber` if there is no such
    // key.
    std::int32_t Integer(KelTextView section, KelTextView key, std::int32_t defaultNumber) const;

private:
    struct Section {
        KelText name;
        std::vector<Entry> entries;
    };

    void TakeLine(KelTextView line);
    const Section* FindSection(KelTextView name) const;
    const KelText* FindValue(KelTextView section, KelTextView key) const;

    std::vector<Section> sections;
};

}
