#pragma once
// A text profile's bytes as text, and its lines, by the one set of rules that reading and editing share. Knows nothing
// of keys and values. Immutable once made: any thread.

#include "base/KelText.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace tarvin {

class ProfileText {
public:
    // Takes any bytes. UTF-16 is known by its mark, UTF-8 by its mark or by being valid; anything else counts as one
    // character for each byte.
    explicit ProfileText(std::string_view fileBytes);

    const KelText& Content() const { return content; }
    // Where in the file's bytes the code unit at `position` of the content begins.
    std::size_t ByteOffset(std::size_t position) const;
    // ASCII text in the file's encoding.
    std::string Encoded(KelTextView ascii) const;

private:
    enum class Encoding { Bytes, Utf8, LittleEndian, BigEndian };

    Encoding encoding = Encoding::Bytes;
    std::size_t markLength = 0;
    KelText content;
};

// Takes the first line and the unit that ends it away from the text; the line comes without that unit.
KelTextView TakeProfileLine(KelTextView& text);

// The name if the line begins a section.
std::optional<KelTextView> ProfileSection(KelTextView line);

}
