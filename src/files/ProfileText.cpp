#include "files/ProfileText.h"

#include <algorithm>
#include <cassert>

namespace tarvin {

namespace {

// A single byte at the end is dropped.
KelText FromUtf16(std::string_view bytes, bool highByteFirst) {
    KelText text;
    text.reserve(bytes.size() / 2);
    for (std::size_t position = 0; position + 1 < bytes.size(); position += 2) {
        const auto first = static_cast<unsigned char>(bytes[position]);
        const auto second = static_cast<unsigned char>(bytes[position + 1]);
        text.push_back(static_cast<char16_t>(highByteFirst ? first << 8 | second : second << 8 | first));
    }
    return text;
}

// FromUtf8 turns an invalid byte into a low surrogate without its high one. Valid UTF-8 never gives that.
bool CameFromValidUtf8(KelTextView text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (IsLowSurrogate(text[position]) && (position == 0 || !IsHighSurrogate(text[position - 1])))
            return false;
    }
    return true;
}

}

ProfileText::ProfileText(std::string_view fileBytes) {
    if (fileBytes.starts_with("\xFF\xFE") || fileBytes.starts_with("\xFE\xFF")) {
        encoding = fileBytes.front() == '\xFE' ? Encoding::BigEndian : Encoding::LittleEndian;
        markLength = 2;
        content = FromUtf16(fileBytes.substr(markLength), encoding == Encoding::BigEndian);
        return;
    }
    // A file in an 8-bit code page is hardly ever valid UTF-8 by chance, so no mark is needed.
    if (fileBytes.starts_with("\xEF\xBB\xBF"))
        markLength = 3;
    content = FromUtf8(fileBytes.substr(markLength));
    if (markLength > 0 || CameFromValidUtf8(content))
        encoding = Encoding::Utf8;
    else
        content = FromBytes(fileBytes);
}

std::size_t ProfileText::ByteOffset(std::size_t position) const {
    assert(position <= content.size());
    switch (encoding) {
    case Encoding::Bytes:
        return position;
    case Encoding::Utf8:
        // Characters differ in length, so those before the position are encoded again.
        return markLength + ToUtf8(KelTextView(content).substr(0, position)).size();
    case Encoding::LittleEndian:
    case Encoding::BigEndian:
        break;
    }
    return markLength + 2 * position;
}

std::string ProfileText::Encoded(KelTextView text) const {
    if (encoding == Encoding::Utf8)
        return ToUtf8(text);
    std::string bytes;
    for (const char16_t unit : text) {
        if (encoding == Encoding::BigEndian)
            bytes.push_back(static_cast<char>(unit >> 8));
        bytes.push_back(static_cast<char>(unit));
        if (encoding == Encoding::LittleEndian)
            bytes.push_back(static_cast<char>(unit >> 8));
    }
    return bytes;
}

KelTextView TakeProfileLine(KelTextView& text) {
    // A NUL ends a line too, because no name and no value can hold one. CR LF gives an empty line, which means nothing.
    constexpr KelTextView lineEnds(u"\r\n\0", 3);
    const std::size_t end = std::min(text.find_first_of(lineEnds), text.size());
    const KelTextView line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::optional<KelTextView> ProfileSection(KelTextView line) {
    line = Trimmed(line);
    const std::size_t end = line.find(u']');
    if (!line.starts_with(u'[') || end == KelTextView::npos)
        return std::nullopt;
    return Trimmed(line.substr(1, end - 1));
}

}
