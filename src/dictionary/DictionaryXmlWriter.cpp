#include "dictionary/DictionaryXml.h"

namespace tarvin::dictionary {

namespace {

// Line ends and tabs become references, because XML parsers turn them into other white space.
std::string Escaped(KelTextView text) {
    std::string escaped;
    for (const char unit : ToUtf8(text)) {
        switch (unit) {
        case '&':
            escaped += "&amp;";
            break;
        case '<':
            escaped += "&lt;";
            break;
        case '>':
            escaped += "&gt;";
            break;
        case '"':
            escaped += "&quot;";
            break;
        case '\t':
        case '\n':
        case '\r':
            escaped += "&#" + std::to_string(unit) + ";";
            break;
        default:
            escaped += unit;
        }
    }
    return escaped;
}

std::string Attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "=\"" + value + "\"";
}

std::string Field(const char* name, const std::string& value) {
    return std::string("    <") + name + ">" + value + "</" + name + ">\n";
}

// The place in the content that a line of the written XML stands for, as the start of a reason. Each text is on one
// line, because its line ends are references.
KelText PlaceOfLine(const DictionaryContent& content, std::int32_t line) {
    // The first line is the declaration and the second one <Dictionary>.
    std::int32_t last = 2;
    for (std::size_t index = 0; index < content.languages.size(); ++index) {
        if (++last == line)
            return u"language " + ToText(static_cast<std::int64_t>(index + 1)) + u": ";
    }
    for (std::size_t index = 0; index < content.entries.size(); ++index) {
        const TextEntry& entry = content.entries[index];
        // <Entry>, four fields, the translations and </Entry>.
        last += 6 + static_cast<std::int32_t>(entry.translations.size());
        if (line <= last)
            return u"entry " + ToText(static_cast<std::int64_t>(index + 1)) + u" (id " + ToText(entry.id) + u"): ";
    }
    return {};
}

// The reason of ReadXml about the written XML, which the user never sees, as a reason about the content.
Error FaultOf(const DictionaryContent& content, KelTextView reason) {
    constexpr KelTextView head = u"line ";
    const auto line = reason.starts_with(head) ? LeadingNumber(reason.substr(head.size())) : std::nullopt;
    const std::size_t fault = reason.find(u": ");
    if (!line || fault == KelTextView::npos)
        return {KelText(reason)};
    return {PlaceOfLine(content, *line) + KelText(reason.substr(fault + 2))};
}

}

Result<std::string> WriteXml(const DictionaryContent& content) {
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Dictionary>\n";
    for (const DictionaryLanguage& language : content.languages) {
        xml += "  <Language" + Attribute("folder", Escaped(language.folder)) +
               Attribute("lcid", std::to_string(language.lcid)) +
               Attribute("codepage", std::to_string(language.codePage)) + ">" + Escaped(language.name) +
               "</Language>\n";
    }
    for (const TextEntry& entry : content.entries) {
        xml += "  <Entry>\n" + Field("id", std::to_string(entry.id)) + Field("phrase", Escaped(entry.phrase)) +
               Field("textpos", Escaped(entry.textPosition)) + Field("comment", Escaped(entry.comment));
        for (const KelText& translation : entry.translations)
            xml += Field("translation", Escaped(translation));
        xml += "  </Entry>\n";
    }
    xml += "</Dictionary>\n";
    // Reading the result back holds the content to every rule of the reader, without a second copy of the rules.
    const auto readBack = ReadXml(xml);
    if (!readBack)
        return FaultOf(content, readBack.Reason().text);
    if (*readBack != content)
        return Error{u"a text is not valid Unicode"};
    return xml;
}

}
