// The texts of the window in the sources, compared with the dictionary that holds their translations.
#include "base/MoreMessages.h"
#include "dictionary/DictionaryCommand.h"
#include "dictionary/DictionaryFile.h"
#include "dictionary/TextHolder.h"
#include "files/NativeFile.h"
#include "harness/TemporaryFolder.h"

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

namespace {

struct SourceText {
    std::string name; // with its innermost namespace
    std::string english;
};

std::string Unescaped(const std::string& literal) {
    std::string text;
    for (std::size_t at = 0; at < literal.size(); ++at) {
        if (literal[at] != '\\') {
            text += literal[at];
            continue;
        }
        const char kind = literal[++at];
        if (kind == 'u') {
            text += ToUtf8(KelText(1, static_cast<char16_t>(std::stoi(literal.substr(at + 1, 4), nullptr, 16))));
            at += 4;
        } else {
            text += kind == 'n' ? '\n' : kind == 't' ? '\t' : kind;
        }
    }
    return text;
}

// By number. Each number is there once.
std::map<std::int32_t, SourceText> TextsOfHeaders() {
    static const std::regex item("namespace ([\\w:]+) \\{|NumberedText (\\w+) = "
                                 "\\{\\s*(\\d+),\\s*((?:u\"(?:[^\"\\\\]|\\\\.)*\"\\s*)+)\\}");
    static const std::regex literal("u\"((?:[^\"\\\\]|\\\\.)*)\"");
    std::map<std::int32_t, SourceText> texts;
    for (const auto& file : std::filesystem::directory_iterator(TARVIN_SOURCE_FOLDER "/src/base")) {
        if (!file.path().filename().string().ends_with("Messages.h"))
            continue;
        const std::string source = ReadWholeFile(file.path(), 1 << 20).ValueOr("");
        std::string space;
        for (std::sregex_iterator found(source.begin(), source.end(), item), end; found != end; ++found) {
            if ((*found)[1].matched) {
                space = (*found)[1];
                space.erase(0, space.rfind(':') + 1);
                continue;
            }
            std::string english;
            const std::string literals = (*found)[4];
            for (std::sregex_iterator part(literals.begin(), literals.end(), literal); part != end; ++part)
                english += Unescaped((*part)[1]);
            const bool isNew =
                texts.try_emplace(std::stoi((*found)[3]), SourceText{space + "." + (*found)[2].str(), english}).second;
            CHECK_MESSAGE(isNew, "twice: ", (*found)[3].str());
        }
    }
    return texts;
}

std::map<std::int32_t, TextEntry> CompiledEntries() {
    const TemporaryFolder folder;
    std::ostringstream said;
    std::ostringstream errors;
    const std::vector<KelText> command = {u"compile", FromUtf8(TARVIN_SOURCE_FOLDER "/packaging/dictionary.xml"),
                                          FromPath(folder / "diction.ary")};
    REQUIRE(dictionary::RunDictionaryCommand(command, said, errors) == 0);
    TextHolder holder;
    REQUIRE(holder.Load({.fileName = folder / "diction.ary", .language = languageAll}));
    std::map<std::int32_t, TextEntry> entries;
    for (const TextEntry& entry : holder.Entries())
        entries.emplace(entry.id, entry);
    return entries;
}

// What a translation must keep: the places for values, and what stands behind a tab.
std::multiset<std::string> Places(const std::string& text) {
    std::multiset<std::string> places;
    for (std::size_t at = text.find('%'); at != std::string::npos; at = text.find('%', at + 1)) {
        if (at + 1 < text.size() && text[at + 1] >= '1' && text[at + 1] <= '9')
            places.insert(text.substr(at, 2));
    }
    if (const std::size_t tab = text.find('\t'); tab != std::string::npos)
        places.insert(text.substr(tab));
    return places;
}

// The windows and menus whose texts mark keys in every language.
const std::vector<std::vector<std::string>> keyGroups = {
    {"label.log", "label.view", "label.help", "label.changeSettings", "label.sendFile", "label.test",
     "label.receiveFile", "label.close", "label.ctsHold", "label.dsrHold", "more.button", "board.seen", "board.help"},
    {"menu.resetLink", "menu.xoffTest", "more.openFolder", "more.files", "more.history", "more.copyStatus",
     "more.about"},
    {"more.filter", "more.readAgain"},
    {"dialog.cancelUpload", "dialog.completeUpload"},
    {"trafficMenu.gutterOff", "trafficMenu.timeOfDay", "trafficMenu.sinceLast"},
    {"historyDialog.machine", "historyDialog.number", "historyDialog.days", "historyDialog.outcome",
     "historyDialog.openFolder", "historyDialog.exportCsv", "historyDialog.refresh", "historyDialog.close"},
    {"startWindow.machine", "startWindow.port", "startWindow.speed", "startWindow.upload", "startWindow.download",
     "startWindow.language", "startWindow.browseUpload", "startWindow.browseDownload", "startWindow.lookAgain",
     "startWindow.create"}};

}

TEST_CASE("NumberedText: the dictionary has each text of the window in all languages, with its places") {
    const auto texts = TextsOfHeaders();
    const auto entries = CompiledEntries();
    REQUIRE(texts.size() > 300);
    for (const auto& numbered : texts) {
        const std::int32_t id = numbered.first;
        const SourceText& text = numbered.second;
        CAPTURE(text.name);
        REQUIRE_MESSAGE(entries.contains(id), id);
        const TextEntry& entry = entries.at(id);
        CHECK(ToUtf8(entry.phrase) == text.english);
        REQUIRE(entry.translations.size() == 4);
        for (const KelText& translation : entry.translations) {
            const std::string words = ToUtf8(translation);
            CAPTURE(words);
            CHECK_FALSE(words.empty());
            CHECK(Places(words) == Places(text.english));
            CHECK(std::ranges::count(words, '&') <= std::ranges::count(text.english, '&'));
        }
    }
    for (const auto& entry : entries) {
        const std::int32_t id = entry.first;
        CHECK_MESSAGE((id < 20000 || texts.contains(id)), "no longer in use: ", id);
    }
}

TEST_CASE("NumberedText: no two keys of one window are alike in any language") {
    std::map<std::string, TextEntry> byName;
    const auto entries = CompiledEntries();
    for (const auto& [id, text] : TextsOfHeaders())
        byName.emplace(text.name, entries.at(id));
    for (std::size_t language = 0; language <= 4; ++language) {
        for (const auto& group : keyGroups) {
            std::set<char16_t> keys;
            for (const std::string& name : group) {
                CAPTURE(name);
                REQUIRE(byName.contains(name));
                const TextEntry& entry = byName.at(name);
                const KelText& words = language == 0 ? entry.phrase : entry.translations[language - 1];
                const std::size_t mark = words.find(u'&');
                if (mark != KelText::npos)
                    CHECK_MESSAGE(keys.insert(ToUpperAscii(words[mark + 1])).second, ToUtf8(words));
            }
        }
    }
}

TEST_CASE("NumberedText: the translator's words, and English without any") {
    CHECK(text::more::number.Words() == u"Number");
    SetTranslator([](std::int32_t id) noexcept -> const char16_t* {
        return id == text::more::number.id ? u"Nummer" : id == text::more::note.id ? u"" : nullptr;
    });
    CHECK(text::more::number.Words() == u"Nummer");
    CHECK(KelText(u"1 ") + text::more::number == u"1 Nummer");
    CHECK(text::more::note.Words() == u"Note");
    CHECK(text::more::comment.Words() == u"First comment");
    SetTranslator(nullptr);
    CHECK(text::more::number.Words() == u"Number");
}
