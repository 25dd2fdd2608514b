#pragma once
// A text profile: sections of key=value lines. Read by the rules of the Windows private-profile calls, so that a file
// means the same on every system. Immutable once made: any thread.

#include "base/Result.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarvin {

class Profile {
public:
    // The longest text, in code units, that Text gives unless the caller asks for more.
    static constexpr std::size_t usualMaxUnits = 79;

    // Read refuses longer files.
    static constexpr std::size_t maxFileBytes = 1024 * 1024;

    struct Entry {
        KelText key;
        KelText value;
    };

    // Takes any bytes, in the encodings of ProfileText. Bytes that are no profile give one without sections.
    explicit Profile(std::string_view fileBytes);
    // Fails if the file cannot be read or is too long.
    static Result<Profile> Read(const std::filesystem::path& file);

    // Names of sections and keys are compared without case. Of several with one name the first counts.
    bool HasSection(KelTextView section) const;
    // All entries of the section in the order of the file, with those whose key has come before. Valid as long as the
    // profile.
    std::span<const Entry> Entries(KelTextView section) const;

    // The value, cut to `maxUnits` code units but never within a surrogate pair. Without such a key `defaultText`,
    // which is not cut.
    KelText Text(KelTextView section, KelTextView key, KelTextView defaultText,
                 std::size_t maxUnits = usualMaxUnits) const;

    // The number at the start of the value modulo 2^32, or 0 if the value starts with no number. Without such a key
    // `defaultNumber`.
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

// The file's bytes with one more entry at the end of the section. Adds the section at the end of the file if it is
// missing. Uses the file's encoding and line ends, and keeps every byte of the file. Does not search for
// an entry with this key: the first of two entries counts.
std::string WithProfileEntry(std::string_view fileBytes, KelTextView section, KelTextView key, KelTextView value);

// The file's bytes with this value for the key: in place of the value that counts, or as WithProfileEntry adds it.
// Keeps every other byte of the file.
std::string WithProfileValue(std::string_view fileBytes, KelTextView section, KelTextView key, KelTextView value);

}
