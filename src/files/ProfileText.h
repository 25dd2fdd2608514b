#pragma once
// The text and the lines of a profile, by rules that reading and adding share. Immutable once made: any thread.

#include "base/KelText.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace tarvin {

class ProfileText {
public:
    // Takes any bytes. A byte order mark tells UTF-16 and UTF-8. Other bytes are UTF-8 if they are valid UTF-8, else
    // one character for each byte.
    explicit ProfileText(std::string_view fileBytes);

    const KelText& Content() const { return content; }
    // The place in the file's bytes of the code unit at `position` of the content. Requires position <=
    // Content().size().
    std::size_t ByteOffset(std::size_t position) const;
    // The text in the file's encoding. With one byte for each character it holds the characters up to U+00FF alone.
    std::string Encoded(KelTextView text) const;

private:
    enum class Encoding { Bytes, Utf8, LittleEndian, BigEndian };

    Encoding encoding = Encoding::Bytes;
    std::size_t markLength = 0;
    KelText content;
};

// Removes the first line and the one code unit that ends it from the text. Gives the line without that unit.
KelTextView TakeProfileLine(KelTextView& text);

// The name of the section that the line begins. None for every other line.
std::optional<KelTextView> ProfileSection(KelTextView line);

}
