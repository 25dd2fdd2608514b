#include "framework/Profile.h"

#include "framework/NativeFile.h"

#include <algorithm>

namespace tarvin {

namespace {

bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}

bool IsLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

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

// FromUtf8 leaves an invalid byte as a low surrogate on its own; valid UTF-8 never gives one.
bool CameFromValidUtf8(KelTextView text) {
    for (std::size_t position = 0; position < text.size(); ++position) {
        if (IsLowSurrogate(text[position]) && (position == 0 || !IsHighSurrogate(text[position - 1])))
            return false;
    }
    return true;
}

KelText Decode(std::string_view bytes) {
    if (bytes.starts_with("\xFF\xFE"))
        return FromUtf16(bytes.substr(2), false);
    if (bytes.starts_with("\xFE\xFF"))
        return FromUtf16(bytes.substr(2), true);
    if (bytes.starts_with("\xEF\xBB\xBF"))
        return FromUtf8(bytes.substr(3));
    const KelText text = FromUtf8(bytes);
    return CameFromValidUtf8(text) ? text : FromBytes(bytes);
}

KelTextView WithoutQuotes(KelTextView value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == u'"' || value.front() == u'\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

KelTextView Cut(KelTextView text, std::size_t maxUnits) {
    if (text.size() <= maxUnits)
        return text;
    text = text.substr(0, maxUnits);
    if (!text.empty() && IsHighSurrogate(text.back()))
        text.remove_suffix(1);
    return text;
}

}

Profile::Profile(std::string_view fileBytes) {
    const KelText content = Decode(fileBytes);
    // A NUL ends a line too: no name or value can hold one.
    constexpr KelTextView lineEnds(u"\r\n\0", 3);
    for (KelTextView rest = content; !rest.empty();) {
        const std::size_t end = std::min(rest.find_first_of(lineEnds), rest.size());
        TakeLine(Trimmed(rest.substr(0, end)));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
}

void Profile::TakeLine(KelTextView line) {
    if (line.empty() || line.front() == u';')
        return;
    if (line.front() == u'[') {
        const std::size_t end = line.find(u']');
        if (end != KelTextView::npos)
            sections.push_back({KelText(Trimmed(line.substr(1, end - 1))), {}});
        return;
    }
    const std::size_t equals = line.find(u'=');
    if (equals == KelTextView::npos || sections.empty())
        return;
    sections.back().entries.push_back(
        {KelText(Trimmed(line.substr(0, equals))), KelText(WithoutQuotes(Trimmed(line.substr(equals + 1))))});
}

const Profile::Section* Profile::FindSection(KelTextView name) const {
    const auto found = std::find_if(sections.begin(), sections.end(),
                                    [&](const Section& section) { return EqualIgnoringCase(section.name, name); });
    return found == sections.end() ? nullptr : &*found;
}

const KelText* Profile::FindValue(KelTextView section, KelTextView key) const {
    const Section* const holder = FindSection(section);
    if (holder == nullptr)
        return nullptr;
    const auto found = std::find_if(holder->entries.begin(), holder->entries.end(),
                                    [&](const Entry& entry) { return EqualIgnoringCase(entry.key, key); });
    return found == holder->entries.end() ? nullptr : &found->value;
}

std::optional<Profile> Profile::Read(const std::filesystem::path& file) {
    constexpr std::size_t longestFile = 1024 * 1024;
    const auto content = ReadWholeFile(file, longestFile);
    return content ? std::optional<Profile>(*content) : std::nullopt;
}

bool Profile::HasSection(KelTextView section) const {
    return FindSection(section) != nullptr;
}

KelText Profile::Text(KelTextView section, KelTextView key, KelTextView defaultText, std::size_t maxUnits) const {
    const KelText* const value = FindValue(section, key);
    return KelText(value != nullptr ? Cut(*value, maxUnits) : defaultText);
}

std::int32_t Profile::Integer(KelTextView section, KelTextView key, std::int32_t defaultNumber) const {
    const KelText* const value = FindValue(section, key);
    if (value == nullptr)
        return defaultNumber;
    KelTextView rest = Trimmed(*value);
    const bool negative = rest.starts_with(u'-');
    if (negative || rest.starts_with(u'+'))
        rest.remove_prefix(1);
    std::uint32_t number = 0;
    for (; !rest.empty() && rest.front() >= u'0' && rest.front() <= u'9'; rest.remove_prefix(1))
        number = number * 10 + static_cast<std::uint32_t>(rest.front() - u'0');
    return static_cast<std::int32_t>(negative ? 0 - number : number);
}

}
