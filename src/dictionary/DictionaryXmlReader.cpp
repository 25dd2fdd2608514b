#include "dictionary/DictionaryFile.h"
#include "dictionary/DictionaryXml.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

#include <expat.h>

namespace tarvin::dictionary {

namespace {

enum class Element { None, Dictionary, Language, Entry, Id, Phrase, TextPosition, Comment, Translation };

// An element, the one element that it may stand in, and whether it holds text.
struct Rule {
    std::string_view name;
    Element element;
    Element parent;
    bool holdsText;
};

constexpr Rule rules[] = {
    {"Dictionary", Element::Dictionary, Element::None, false},
    {"Language", Element::Language, Element::Dictionary, true},
    {"Entry", Element::Entry, Element::Dictionary, false},
    {"id", Element::Id, Element::Entry, true},
    {"phrase", Element::Phrase, Element::Entry, true},
    {"textpos", Element::TextPosition, Element::Entry, true},
    {"comment", Element::Comment, Element::Entry, true},
    {"translation", Element::Translation, Element::Entry, true},
};

constexpr std::string_view whiteSpace = " \t\r\n";

// None unless the text is one decimal number, with white space around it at most.
std::optional<std::int32_t> Number(std::string_view text) {
    const std::size_t begin = std::min(text.find_first_not_of(whiteSpace), text.size());
    text = text.substr(begin, text.find_last_not_of(whiteSpace) + 1 - begin);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

// Builds the content element by element. The first fault stops the parser.
class Reader {
public:
    Reader() : parser(::XML_ParserCreate(nullptr), ::XML_ParserFree) {
        ::XML_SetUserData(parser.get(), this);
        ::XML_SetElementHandler(parser.get(), &Reader::OnBegin, &Reader::OnEnd);
        ::XML_SetCharacterDataHandler(parser.get(), &Reader::OnText);
        ::XML_SetStartDoctypeDeclHandler(parser.get(), &Reader::OnDocumentType);
    }

    // Once for each object.
    Result<DictionaryContent> Read(std::string_view xml);

private:
    // Expat calls plain functions and hands the object to them.
    static Reader& Self(void* reader) { return *static_cast<Reader*>(reader); }
    static void XMLCALL OnBegin(void* reader, const XML_Char* name, const XML_Char** attributes) {
        Self(reader).Begin(name, attributes);
    }
    static void XMLCALL OnEnd(void* reader, const XML_Char*) { Self(reader).End(); }
    static void XMLCALL OnText(void* reader, const XML_Char* text, int byteCount) {
        Self(reader).Text({text, static_cast<std::size_t>(byteCount)});
    }
    // Entities are declared in a document type. A short one can expand to gigabytes, and a dictionary needs none.
    static void XMLCALL OnDocumentType(void* reader, const XML_Char*, const XML_Char*, const XML_Char*, int) {
        Self(reader).Fail("a document type is not accepted");
    }

    void Begin(std::string_view name, const XML_Char** attributes);
    void BeginLanguage(const XML_Char** attributes);
    void Text(std::string_view more);
    void End();
    void EndLanguage();
    void EndEntry();
    void TakeField(Element element);
    void TakeId();
    void Fail(const std::string& message);

    std::unique_ptr<std::remove_pointer_t<XML_Parser>, decltype(&::XML_ParserFree)> parser;
    bool hasFailed = false;
    Error fault;
    DictionaryContent content;
    std::vector<const Rule*> open;
    std::string text;                                                  // of the innermost open element
    TextEntry entry;                                                   // the open one
    std::vector<Element> fields;                                       // of the open entry, so far
    std::vector<bool> hasEntry = std::vector<bool>(maximumEntryCount); // by id
};

Result<DictionaryContent> Reader::Read(std::string_view xml) {
    const auto status = ::XML_Parse(parser.get(), xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    if (status != XML_STATUS_OK && !hasFailed)
        Fail(::XML_ErrorString(::XML_GetErrorCode(parser.get())));
    if (hasFailed)
        return fault;
    return std::move(content);
}

void Reader::Fail(const std::string& message) {
    // A stopped parser may still deliver what it has read. The first fault is the one to report.
    if (hasFailed)
        return;
    hasFailed = true;
    const auto line = static_cast<std::int64_t>(::XML_GetCurrentLineNumber(parser.get()));
    fault = {u"line " + ToText(line) + u": " + FromUtf8(message)};
    ::XML_StopParser(parser.get(), XML_FALSE);
}

void Reader::Begin(std::string_view name, const XML_Char** attributes) {
    const auto rule =
        std::find_if(std::begin(rules), std::end(rules), [&](const Rule& each) { return each.name == name; });
    if (rule == std::end(rules))
        return Fail("unknown element <" + std::string(name) + ">");
    const Element parent = open.empty() ? Element::None : open.back()->element;
    if (rule->parent != parent)
        return Fail("<" + std::string(name) + "> stands in the wrong place");
    open.push_back(&*rule);
    text.clear();
    if (rule->element == Element::Language)
        return BeginLanguage(attributes);
    if (*attributes != nullptr)
        return Fail("<" + std::string(name) + "> has no attribute " + *attributes);
    // The fields of the entry before this one must not remain.
    if (rule->element == Element::Entry) {
        entry = {};
        fields.clear();
    }
}

void Reader::BeginLanguage(const XML_Char** attributes) {
    if (!content.entries.empty())
        return Fail("<Language> stands behind an <Entry>");
    if (content.languages.size() == maximumLanguageCount)
        return Fail("too many languages");
    DictionaryLanguage& language = content.languages.emplace_back();
    int attributeCount = 0;
    for (; *attributes != nullptr; attributes += 2, ++attributeCount) {
        const std::string_view name = attributes[0];
        const std::string_view value = attributes[1];
        if (name == "folder") {
            language.folder = FromUtf8(value);
            continue;
        }
        if (name != "lcid" && name != "codepage")
            return Fail("<Language> has no attribute " + std::string(name));
        const auto number = Number(value);
        if (!number)
            return Fail("\"" + std::string(value) + "\" is no number");
        (name == "lcid" ? language.lcid : language.codePage) = *number;
    }
    // XML allows each attribute once, so three are these three.
    if (attributeCount != 3)
        Fail("<Language> needs folder, lcid and codepage");
}

// Expat delivers a text in pieces, and the white space between elements as text too.
void Reader::Text(std::string_view more) {
    if (!open.empty() && open.back()->holdsText)
        text += more;
    else if (more.find_first_not_of(whiteSpace) != std::string_view::npos)
        Fail("text stands in the wrong place");
}

void Reader::End() {
    // After a fault the stack of open elements may lack the element that ends here.
    if (hasFailed)
        return;
    const Element element = open.back()->element;
    open.pop_back();
    if (element == Element::Language)
        EndLanguage();
    else if (element == Element::Entry)
        EndEntry();
    else if (element == Element::Dictionary && content.entries.empty())
        Fail("there is no <Entry>");
    else if (element != Element::Dictionary)
        TakeField(element);
}

// A user chooses a language by its name or its folder, and of two equal ones could never choose the second.
void Reader::EndLanguage() {
    DictionaryLanguage& language = content.languages.back();
    language.name = FromUtf8(text);
    const auto isTaken = [&](KelText DictionaryLanguage::*naming) {
        return !(language.*naming).empty() &&
               std::any_of(content.languages.begin(), content.languages.end() - 1,
                           [&](const DictionaryLanguage& other) { return other.*naming == language.*naming; });
    };
    if (isTaken(&DictionaryLanguage::name))
        Fail("the language name \"" + text + "\" is given twice");
    else if (isTaken(&DictionaryLanguage::folder))
        Fail("the language folder \"" + ToUtf8(language.folder) + "\" is given twice");
}

// The other fields may be missing. Their order is free, so this is checked at the end of the entry.
void Reader::EndEntry() {
    for (const Element needed : {Element::Id, Element::Phrase}) {
        if (std::find(fields.begin(), fields.end(), needed) == fields.end())
            return Fail(needed == Element::Id ? "the entry has no <id>" : "the entry has no <phrase>");
    }
    content.entries.push_back(std::move(entry));
}

void Reader::TakeField(Element element) {
    if (element == Element::Translation) {
        if (entry.translations.size() == content.languages.size())
            return Fail("the entry has more translations than there are languages");
        entry.translations.push_back(FromUtf8(text));
        return;
    }
    if (std::find(fields.begin(), fields.end(), element) != fields.end())
        return Fail("the entry has an element twice");
    fields.push_back(element);
    if (element == Element::Id)
        return TakeId();
    if (element == Element::TextPosition && !text.starts_with("TXTPOS_"))
        return Fail("a text position begins with TXTPOS_");
    KelText& field = element == Element::Phrase    ? entry.phrase
                     : element == Element::Comment ? entry.comment
                                                   : entry.textPosition;
    field = FromUtf8(text);
}

void Reader::TakeId() {
    const auto id = Number(text);
    if (!id || *id < 0 || *id > highestTextId)
        return Fail("\"" + text + "\" is no text id (0 to " + std::to_string(highestTextId) + ")");
    const auto slot = static_cast<std::size_t>(*id);
    if (hasEntry[slot])
        return Fail("the text id " + std::to_string(*id) + " is given twice");
    hasEntry[slot] = true;
    entry.id = *id;
}

}

Result<DictionaryContent> ReadXml(std::string_view xml) {
    return Reader().Read(xml);
}

}
