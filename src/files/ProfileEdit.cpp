#include "files/ProfileEdit.h"

#include "files/ProfileText.h"

namespace tarvin {

namespace {

// Where the last entry of the section ends, or its heading if it has none; none if there is no such section.
std::optional<std::size_t> EndOfSection(KelTextView content, KelTextView section) {
    std::optional<std::size_t> end;
    for (KelTextView rest = content; !rest.empty();) {
        const std::size_t start = content.size() - rest.size();
        const KelTextView line = TakeProfileLine(rest);
        const auto name = ProfileSection(line);
        if (name && end)
            break;
        const bool isHeading = name && EqualIgnoringCase(*name, section);
        const KelTextView text = Trimmed(line);
        const bool isEntry = !text.starts_with(u';') && text.find(u'=') != KelTextView::npos;
        if (isHeading || (end && isEntry))
            end = start + line.size();
    }
    return end;
}

KelText LineEndAt(KelTextView content, std::size_t position) {
    std::size_t found = content.find_first_of(u"\r\n", position);
    if (found == KelTextView::npos)
        found = content.find_first_of(u"\r\n");
    if (found == KelTextView::npos)
        return u"\n";
    const KelTextView end = content.substr(found, 2);
    return KelText(end == u"\r\n" ? end : end.substr(0, 1));
}

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
        const bool isWithinLine = !content.empty() && content.back() != u'\r' && content.back() != u'\n';
        added = (isWithinLine ? lineEnd : KelText()) + u'[' + KelText(section) + u']' + lineEnd + entry + lineEnd;
    }
    std::string result(fileBytes);
    result.insert(text.ByteOffset(position), text.Encoded(added));
    return result;
}

}
