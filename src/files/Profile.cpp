#include "files/Profile.h"

#include "files/NativeFile.h"
#include "files/ProfileText.h"

#include <algorithm>

namespace tarvin {

namespace {

// One pair of quotes goes; quotes within the value stay.
KelTextView WithoutQuotes(KelTextView value) {
    const bool quoted =
        value.size() >= 2 && value.front() == value.back() && (value.front() == u'"' || value.front() == u'\'');
    return quoted ? value.substr(1, value.size() - 2) : value;
}

// A cut pair would leave half a character.
KelTextView Cut(KelTextView text, std::size_t maxUnits) {
    if (text.size() <= maxUnits)
        return text;
    text = text.substr(0, maxUnits);
    if (!text.empty() && IsHighSurrogate(text.back()))
        text.remove_suffix(1);
    return text;
}

// The end of the section's last entry, or of its heading if it has no entry. None if the section is missing.
std::optional<std::size_t> EndOfSection(KelTextView content, KelTextView section) {
    std::optional<std::size_t> end;
    for (KelTextView rest = content; !rest.empty();) {
        const std::size_t start = content.size() - rest.size();
        const KelTextView line = TakeProfileLine(rest);
        const auto name = ProfileSection(line);
        if (name && end)
            break;
        // Comments after the last entry are passed over: they may belong to the next section.
        const bool isHeading = name && EqualIgnoringCase(*name, section);
        const KelTextView text = Trimmed(line);
        const bool isEntry = !text.starts_with(u';') && text.find(u'=') != KelTextView::npos;
        if (isHeading || (end && isEntry))
            end = start + line.size();
    }
    return end;
}

// The line end at or after the position; at the end of the file the first one of the file; CR LF in a file without
// any.
KelText LineEndAt(KelTextView content, std::size_t position) {
    std::size_t found = content.find_first_of(u"\r\n", position);
    if (found == KelTextView::npos)
        found = content.find_first_of(u"\r\n");
    if (found == KelTextView::npos)
        return u"\r\n";
    const KelTextView end = content.substr(found, 2);
    return KelText(end == u"\r\n" ? end : end.substr(0, 1));
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
    // A line before the first section belongs to none.
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

Result<Profile> Profile::Read(const std::filesystem::path& file) {
    const auto content = ReadWholeFile(file, maxFileBytes);
    if (!content)
        return content.Reason();
    return Profile(*content);
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
    // Unsigned, so that too many digits wrap around as they do in the private-profile calls.
    std::uint32_t number = 0;
    for (; !rest.empty() && rest.front() >= u'0' && rest.front() <= u'9'; rest.remove_prefix(1))
        number = number * 10 + static_cast<std::uint32_t>(rest.front() - u'0');
    return static_cast<std::int32_t>(negative ? 0 - number : number);
}

std::string WithProfileEntry(std::string_view fileBytes, KelTextView section, KelTextView key, KelTextView value) {
    const ProfileText text(fileBytes);
    const KelTextView content = text.Content();
    const auto endOfSection = EndOfSection(content, section);
    const std::size_t position = endOfSection.value_or(content.size());
    const KelText lineEnd = LineEndAt(content, position);
    const KelText entry = KelText(key) + u'=' + KelText(value);
    KelText added;
    if (endOfSection) {
        added = lineEnd + entry;
    } else {
        // The last line of the file may lack its line end.
        const bool isWithinLine = !content.empty() && content.back() != u'\r' && content.back() != u'\n';
        added = (isWithinLine ? lineEnd : KelText()) + u'[' + KelText(section) + u']' + lineEnd + entry + lineEnd;
    }
    std::string result(fileBytes);
    result.insert(text.ByteOffset(position), text.Encoded(added));
    return result;
}

std::string WithProfileValue(std::string_view fileBytes, KelTextView section, KelTextView key, KelTextView value) {
    const ProfileText text(fileBytes);
    const KelTextView content = text.Content();
    bool isWithin = false;
    for (KelTextView rest = content; !rest.empty();) {
        const std::size_t start = content.size() - rest.size();
        const KelTextView line = TakeProfileLine(rest);
        if (const auto name = ProfileSection(line)) {
            // Only the first section with a name counts.
            if (isWithin)
                break;
            isWithin = EqualIgnoringCase(*name, section);
            continue;
        }
        const std::size_t equals = line.find(u'=');
        const KelTextView found = Trimmed(line.substr(0, std::min(equals, line.size())));
        if (!isWithin || equals == KelTextView::npos || !EqualIgnoringCase(found, key))
            continue;
        const std::size_t begin = text.ByteOffset(start + equals + 1);
        const std::size_t end = text.ByteOffset(start + line.size());
        std::string result(fileBytes);
        return result.replace(begin, end - begin, text.Encoded(value));
    }
    return WithProfileEntry(fileBytes, section, key, value);
}

}
