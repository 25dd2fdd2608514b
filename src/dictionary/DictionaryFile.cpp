#include "dictionary/DictionaryFile.h"

#include "dictionary/PackedBytes.h"

#include <utility>

namespace tarvin {

namespace {

// A change that older programs cannot read needs a new version.
constexpr std::string_view headerText = "TarvinDL diction";
constexpr std::uint32_t formatVersion = 1;
constexpr std::size_t numberSize = 4;
// The fewest bytes that each of these takes, with all its texts empty.
constexpr std::size_t languageSize = 4 * numberSize;
constexpr std::size_t entrySize = 5 * numberSize;
constexpr std::size_t furtherObjectSize = 2 * numberSize;

const Error noDictionary = {u"is no dictionary"};
const Error newerForm = {u"is a dictionary in a form that this program does not know"};
const Error damaged = {u"is damaged or not whole"};

}

Result<> DictionaryReader::Open(std::string fileBytes) {
    Clear();
    content = std::move(fileBytes);
    if (IsPacked(content)) {
        auto unpacked = Unpack(content, maximumDictionarySize);
        if (!unpacked) {
            Clear();
            return unpacked.Reason();
        }
        content = std::move(*unpacked);
    }
    Result<> checked = Check();
    if (!checked)
        Clear();
    return checked;
}

void DictionaryReader::Clear() {
    content.clear();
    languages.clear();
    entryCount = furtherObjectCount = position = 0;
    entryBytes = {};
}

// Walks through all of the file before the first entry is given out: a dictionary is loaded whole or not at all.
Result<> DictionaryReader::Check() {
    ObjectReader reader(content);
    if (content.size() > maximumDictionarySize || reader.Bytes(headerText.size()) != headerText)
        return noDictionary;
    // The version before the checksum: a newer form may have its checksum in another place.
    if (const std::uint32_t version = reader.Number(); version != formatVersion)
        return reader.HasFailed() ? damaged : newerForm;
    if (const std::uint32_t checksum = reader.Number(); checksum != Checksum(reader.Rest()))
        return damaged;
    const std::uint32_t languageCount = reader.Count(languageSize, maximumLanguageCount);
    for (std::uint32_t index = 0; index < languageCount; ++index) {
        DictionaryLanguage& language = languages.emplace_back();
        language.folder = FromUtf8(reader.Text());
        language.lcid = reader.Integer();
        language.codePage = reader.Integer();
        language.name = FromUtf8(reader.Text());
    }
    entryCount = reader.Count(entrySize, maximumEntryCount);
    // Entries differ in size. Next starts again from here.
    entryBytes = reader.Rest();
    Entry entry;
    for (std::uint32_t index = 0; index < entryCount && !reader.HasFailed(); ++index)
        ReadEntry(reader, entry);
    // Each further object is a kind and its bytes, so that a program can skip a kind that it does not know.
    furtherObjectCount = reader.Count(furtherObjectSize, maximumEntryCount);
    for (std::uint32_t index = 0; index < furtherObjectCount && !reader.HasFailed(); ++index) {
        reader.Number();
        reader.Text();
    }
    if (reader.HasFailed() || !reader.Rest().empty())
        return damaged;
    return {};
}

// Check calls this before the entry is known to be whole, so each count is bounded here.
void DictionaryReader::ReadEntry(ObjectReader& reader, Entry& entry) const {
    entry.id = reader.Integer();
    entry.phrase = reader.Text();
    entry.translations.resize(reader.Count(numberSize, static_cast<std::uint32_t>(languages.size())));
    for (std::string_view& translation : entry.translations)
        translation = reader.Text();
    entry.textPosition = reader.Text();
    entry.comment = reader.Text();
}

bool DictionaryReader::Next(Entry& entry) {
    if (position == 0)
        entries = ObjectReader(entryBytes);
    if (position == entryCount) {
        position = 0;
        return false;
    }
    ReadEntry(entries, entry);
    ++position;
    return true;
}

DictionaryContent ReadContent(DictionaryReader& reader) {
    DictionaryContent content;
    content.languages = reader.Languages();
    content.entries.reserve(reader.EntryCount());
    for (DictionaryReader::Entry entry; reader.Next(entry);) {
        TextEntry& whole = content.entries.emplace_back();
        whole.id = entry.id;
        whole.phrase = FromUtf8(entry.phrase);
        for (const std::string_view translation : entry.translations)
            whole.translations.push_back(FromUtf8(translation));
        whole.textPosition = FromUtf8(entry.textPosition);
        whole.comment = FromUtf8(entry.comment);
    }
    return content;
}

std::string EncodeDictionary(const DictionaryContent& content) {
    ObjectWriter body;
    body.Number(static_cast<std::uint32_t>(content.languages.size()));
    for (const DictionaryLanguage& language : content.languages) {
        body.Text(ToUtf8(language.folder));
        body.Integer(language.lcid);
        body.Integer(language.codePage);
        body.Text(ToUtf8(language.name));
    }
    body.Number(static_cast<std::uint32_t>(content.entries.size()));
    for (const TextEntry& entry : content.entries) {
        body.Integer(entry.id);
        body.Text(ToUtf8(entry.phrase));
        body.Number(static_cast<std::uint32_t>(entry.translations.size()));
        for (const KelText& translation : entry.translations)
            body.Text(ToUtf8(translation));
        body.Text(ToUtf8(entry.textPosition));
        body.Text(ToUtf8(entry.comment));
    }
    // No further objects.
    body.Number(0);
    ObjectWriter file;
    file.Bytes(headerText);
    file.Number(formatVersion);
    // Of everything after it.
    file.Number(Checksum(body.Written()));
    file.Bytes(body.Written());
    return file.Written();
}

}
