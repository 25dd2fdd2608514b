#pragma once
// A text profile (sections of key=value lines), read by the rules of the Windows private-profile calls, so that a file
// means the same on every system. Knows nothing of what is in it.
// Immutable once made: any thread.

#include "framework/KelText.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace tarvin {

class Profile {
public:
    // The longest text that a caller gets who does not ask for more, in code units.
    static constexpr std::size_t usualMaxUnits = 79;

    // Takes any bytes; what is no profile has no sections. UTF-16 is known by its mark, UTF-8 by its mark or by being
    // valid; anything else counts as one character for each byte.
    explicit Profile(std::string_view fileBytes);
    // None if the file cannot be read or is longer than a megabyte, which no profile is.
    static std::optional<Profile> Read(const std::filesystem::path& file);

    // Names of sections and keys are compared without case. Of several with one name the first counts.
    bool HasSection(KelTextView section) const;

    // The value, cut to `maxUnits` but never within a surrogate pair; `defaultText` as it is if there is no such key.
    KelText Text(KelTextView section, KelTextView key, KelTextView defaultText,
                 std::size_t maxUnits = usualMaxUnits) const;

    // The number at the beginning of the value, 0 if there is none, modulo 2^32; `defaultNumber` if there is no such
    // key.
    std::int32_t Integer(KelTextView section, KelTextView key, std::int32_t defaultNumber) const;

private:
    struct Entry {
        KelText key;
        KelText value;
    };
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
