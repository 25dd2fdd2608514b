#include "dictionary/TextHolder.h"

#include "base/Messages.h"
#include "dictionary/DictionaryFile.h"
#include "files/NativeFile.h"

#include <algorithm>

namespace tarvin {

namespace {

// The pool grows by so many code units at a time, the index by so many slots.
constexpr std::size_t poolBlock = 8192;
constexpr std::size_t indexBlock = 16;

// The texts in which a dictionary describes the language.
constexpr std::int32_t languageNoteText = 323;
constexpr std::int32_t languageNoteTitle = 324;

// The English text that stands in for one that is not loaded, for example without a dictionary.
const char16_t* BuiltInText(std::int32_t id) noexcept {
    for (const auto& builtIn : text::dictionary::all) {
        if (builtIn.id == id)
            return builtIn.english;
    }
    return u"";
}

bool IsTextId(std::int32_t id) {
    return id >= 0 && id <= highestTextId;
}

// The phrase replaces a missing or empty translation.
std::string_view ChosenText(const DictionaryReader::Entry& entry, std::int32_t language) {
    const auto place = static_cast<std::size_t>(language);
    const bool isTranslated = language >= 0 && place < entry.translations.size() && !entry.translations[place].empty();
    return isTranslated ? entry.translations[place] : entry.phrase;
}

std::filesystem::path WholePath(const DictionaryRequest& request) {
    const auto& name = request.fileName;
    const std::filesystem::path path = name.has_parent_path() ? name : request.programFolder / name;
    // Absolute, because the working folder may change later.
    std::error_code error;
    const std::filesystem::path absolute = std::filesystem::absolute(path, error);
    return error ? path : absolute;
}

}

Result<> TextHolder::Load(const DictionaryRequest& request) {
    Clear();
    const auto wanted = FindLanguageSwitch(request.commandLine);
    languageName = wanted ? wanted->name : request.defaultLanguage;
    language = request.language;
    dictionaryFile = WholePath(request);
    KelText file = FromPath(dictionaryFile);
    if (auto bytes = ReadWholeFile(dictionaryFile, maximumDictionarySize)) {
        DictionaryReader reader;
        if (reader.Open(std::move(*bytes))) {
            Take(reader);
            return {};
        }
    } else {
        file += u": " + bytes.Reason().text;
    }
    language = languageNone;
    return Error{Filled(text::box::badDictionary, {file})};
}

void TextHolder::Clear() {
    // New objects rather than clear(): they give the memory of the last language back.
    pool = std::vector<char16_t>();
    index = std::vector<std::uint64_t>();
    entries = std::vector<TextEntry>();
    languages.clear();
    languageNote.clear();
    skippedEntryCount = 0;
}

void TextHolder::Take(DictionaryReader& reader) {
    languages = reader.Languages();
    if (language == languageByName || language == languageUnknown)
        language = ChooseLanguage(reader.Languages(), languageName);
    if (language == languageUnknown)
        language = languageNone;
    if (language == languageAll) {
        entries = ReadContent(reader).entries;
        return;
    }
    AddChosenTexts(reader);
    // A missing text gives an empty one here: the built-in texts describe no language.
    const auto loadedText = [&](std::int32_t id) {
        const char16_t* text = TextOrNull(id);
        return KelText(text == nullptr ? u"" : text);
    };
    languageNote = loadedText(languageNoteTitle) + u"\n\n" + loadedText(languageNoteText);
}

void TextHolder::AddChosenTexts(DictionaryReader& reader) {
    // The first pass counts, so that the memory is allocated once. Growing block by block would copy the texts each
    // time.
    DictionaryReader::Entry entry;
    std::int32_t highestId = 0;
    std::size_t unitCount = 0;
    while (reader.Next(entry)) {
        if (!IsTextId(entry.id)) {
            ++skippedEntryCount;
            continue;
        }
        highestId = std::max(highestId, entry.id);
        unitCount += FromUtf8(ChosenText(entry, language)).size() + 1;
    }
    if (unitCount == 0)
        return;
    ReserveIndex(highestId);
    ReservePool(unitCount);
    while (reader.Next(entry))
        Add(FromUtf8(ChosenText(entry, language)), entry.id);
}

bool TextHolder::Add(KelTextView text, std::int32_t id) {
    // The first text wins, so the order of the entries in the file decides.
    if (!IsTextId(id) || TextOrNull(id) != nullptr)
        return false;
    text = text.substr(0, text.find(u'\0'));
    ReserveIndex(id);
    ReservePool(text.size() + 1);
    const auto slot = static_cast<std::size_t>(id);
    if (index.size() <= slot)
        index.resize(slot + 1);
    // 0 stands for a missing text, so places count from 1.
    index[slot] = pool.size() + 1;
    pool.insert(pool.end(), text.begin(), text.end());
    pool.push_back(u'\0');
    return true;
}

void TextHolder::ReserveIndex(std::int32_t id) {
    const std::size_t length = static_cast<std::size_t>(id) + 1;
    if (length > index.capacity())
        index.reserve((length / indexBlock + 1) * indexBlock);
}

void TextHolder::ReservePool(std::size_t unitCount) {
    const std::size_t used = pool.size() + unitCount;
    if (used > pool.capacity())
        pool.reserve(used / poolBlock * poolBlock + poolBlock);
}

const char16_t* TextHolder::Text(std::int32_t id) const noexcept {
    const char16_t* text = TextOrNull(id);
    return text != nullptr ? text : BuiltInText(id);
}

const char16_t* TextHolder::TextOrNull(std::int32_t id) const noexcept {
    // A negative id becomes a slot beyond every index.
    const std::size_t slot = static_cast<std::uint32_t>(id);
    const std::uint64_t place = slot < index.size() ? index[slot] : 0;
    return place != 0 ? pool.data() + (place - 1) : nullptr;
}

const char16_t* TextHolder::TextByReference(KelTextView reference) const noexcept {
    const char16_t* text = TextByReferenceOrNull(reference);
    return text != nullptr ? text : u"";
}

const char16_t* TextHolder::TextByReferenceOrNull(KelTextView reference) const noexcept {
    const auto id = reference.starts_with(u'^') ? LeadingNumber(reference.substr(1)) : std::nullopt;
    return id ? TextOrNull(*id) : nullptr;
}

TextHolder::MemoryUse TextHolder::Memory() const {
    return {pool.size(), pool.capacity(), index.size(), index.capacity()};
}

TextHolder& Dictionary() {
    static TextHolder dictionary;
    return dictionary;
}

}
