#include "files/Profile.h"

#include "files/NativeFile.h"
#include "files/ProfileText.h"

#include <algorithm>

namespace tarvin {

namespace {

bool IsHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
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
    const ProfileText text(fileBytes);
    for (KelTextView rest = text.Content(); !rest.empty();)
        TakeLine(Trimmed(TakeProfileLine(rest)));
}

void Profile::TakeLine(KelTextView line) {
    if (line.starts_with(u'[')) {
        if (const auto section = ProfileSection(line))
            sections.push_back({KelText(*section), {}});
        return;
    }
    if (line.empty() || line.front() == u';')
        return;
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
    const auto content = ReadWholeFile(file, maxFileBytes);
    return content ? std::optional<Profile>(*content) : std::nullopt;
}

bool Profile::HasSection(KelTextView section) const {
    return FindSection(section) != nullptr;
}

std::span<const Profile::Entry> Profile::Entries(KelTextView section) const {
    const Section* const holder = FindSection(section);
    return holder != nullptr ? std::span(holder->entries) : std::span<const Entry>();
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
