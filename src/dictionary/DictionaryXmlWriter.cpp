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
        return readBack.Reason();
    if (*readBack != content)
        return Error{u"line 1: a text is not valid Unicode"};
    return xml;
}

}
