#include "dictionary/TextHolder.h"

#include "dictionary/DictionaryFile.h"
#include "dictionary/PackedBytes.h"
#include "harness/TemporaryFolder.h"

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

namespace {

DictionaryContent Sample() {
    return {{{u"German", 1031, 1252, u"Deutsch"}, {u"Austrian", 3079, 1252, u"Deutsch (A)"}, {u"fr", 1036, 0, u"Frz"}},
            {{10, u"base", {u"de", u"at", u"fr"}}, {11, u"only base", {u"", u"at"}}, {10, u"later", {u"later"}}}};
}

std::string Header(std::string_view text, std::uint32_t number) {
    ObjectWriter writer;
    writer.Bytes(text);
    writer.Number(1);
    writer.Number(number);
    return writer.Written();
}

std::string PlainFile(std::string_view body) {
    return Header("TarvinDL diction", Checksum(body)).append(body);
}

// The body of a dictionary: numbers, each with the text that follows it.
std::string Body(std::initializer_list<std::pair<std::uint32_t, std::string_view>> parts) {
    ObjectWriter writer;
    for (const auto& [number, text] : parts) {
        writer.Number(number);
        writer.Bytes(text);
    }
    return writer.Written();
}

class Loader {
public:
    Result<> Load(std::string_view bytes, KelText commandLine = {}, KelText defaultLanguage = {}) {
        folder.WriteFile("diction.ary", bytes);
        return holder.Load({.programFolder = folder.Path(),
                            .commandLine = std::move(commandLine),
                            .defaultLanguage = std::move(defaultLanguage)});
    }
    bool IsEmpty() const {
        const auto memory = holder.Memory();
        return memory.poolCapacity + memory.indexCapacity == 0 && holder.LanguageNote().empty();
    }

    TemporaryFolder folder;
    TextHolder holder;
};

}

TEST_CASE("TextHolder: the switch chooses the language, without it the default") {
    struct Case {
        KelText commandLine;
        KelText defaultLanguage;
        KelText text;
        KelText textWithoutGerman;
    };
    const Case cases[] = {
        {u"LASER /l=Deutsch 2", u"Frz", u"de", u"only base"},
        {u"/L=Deu", u"", u"de", u"only base"},
        {u"/l=\"Deutsch (A)\" LASER", u"", u"at", u"at"},
        {u"/l=Deutsch\" (\"A)", u"", u"at", u"at"},
        {u"LASER \t/l=\" Frz \"", u"", u"fr", u"only base"},
        {u"/l=\"Deutsch (", u"", u"at", u"at"},
        {u"/l=Austrian", u"", u"at", u"at"},
        {u"/l=#1", u"", u"de", u"only base"},
        {u"/l=#2", u"", u"at", u"at"},
        {u"/l=#0", u"", u"base", u"only base"},
        {u"/l=#4", u"", u"base", u"only base"},
        {u"/l=#4294967297", u"", u"base", u"only base"},
        {u"/l=English", u"Frz", u"base", u"only base"},
        {u"/l=deutsch", u"Frz", u"base", u"only base"},
        {u"/l= Frz", u"Frz", u"base", u"only base"},
        {u"LASER", u"Frz", u"fr", u"only base"},
        {u"A/l=Deutsch", u"Frz", u"fr", u"only base"},
        {u"", u"", u"base", u"only base"},
    };
    Loader loader;
    for (const std::string& file : {EncodeDictionary(Sample()), Pack(EncodeDictionary(Sample()))}) {
        for (const Case& each : cases) {
            CAPTURE(ToUtf8(each.commandLine));
            REQUIRE(loader.Load(file, each.commandLine, each.defaultLanguage));
            CHECK(ToUtf8(loader.holder.Text(10)) == ToUtf8(each.text));
            CHECK(ToUtf8(loader.holder.Text(11)) == ToUtf8(each.textWithoutGerman));
        }
        REQUIRE(loader.Load(file, u"/l=all"));
        CHECK(loader.holder.Entries() == Sample().entries);
        CHECK(loader.IsEmpty());
    }
}

TEST_CASE("TextHolder: a missing text is the built-in one or empty, and a reference finds loaded texts only") {
    Loader loader;
    CHECK(KelText(loader.holder.Text(48)) == u"Cancel");
    CHECK(loader.holder.TextOrNull(48) == nullptr);
    DictionaryContent content = Sample();
    content.entries.push_back({66, u"Yeah"});
    content.entries.push_back({324, u"note"});
    REQUIRE(loader.Load(EncodeDictionary(content)));
    CHECK(loader.holder.LanguageNote() == u"note\n\n");
    constexpr std::int32_t absent[] = {-1, 0, 12, 325, highestTextId, 0x7FFFFFFF, -0x7FFFFFFF - 1};
    for (const std::int32_t id : absent)
        CHECK(KelText(loader.holder.Text(id)).empty());
    struct Case {
        KelText reference;
        KelText text;
    };
    const Case cases[] = {{u"^66", u"Yeah"}, {u"^0066x", u"Yeah"}, {u"66", u""},  {u"^", u""},
                          {u"^-66", u""},    {u" ^66", u""},       {u"^48", u""}, {u"^99999999999999999999", u""}};
    for (const Case& each : cases) {
        CAPTURE(ToUtf8(each.reference));
        CHECK(loader.holder.TextByReference(each.reference) == each.text);
        CHECK((loader.holder.TextByReferenceOrNull(each.reference) == nullptr) == each.text.empty());
    }
}

TEST_CASE("TextHolder: memory grows in blocks, by text and by id") {
    struct Case {
        std::size_t length;
        std::int32_t id;
        bool isAdded;
        TextHolder::MemoryUse memory;
    };
    const Case cases[] = {
        {8190, 15, true, {8191, 8192, 16, 32}},  {0, 31, true, {8192, 8192, 32, 32}},
        {5, 31, false, {8192, 8192, 32, 32}},    {0, 32, true, {8193, 16384, 33, 48}},
        {8191, 0, true, {16385, 24576, 33, 48}}, {1, highestTextId + 1, false, {16385, 24576, 33, 48}},
        {1, -1, false, {16385, 24576, 33, 48}},  {20000, 1000, true, {36386, 40960, 1001, 1008}},
    };
    TextHolder holder;
    for (const Case& each : cases) {
        CAPTURE(each.id);
        CHECK(holder.Add(KelText(each.length, u'x'), each.id) == each.isAdded);
        const auto [poolUsed, poolCapacity, indexLength, indexCapacity] = holder.Memory();
        CHECK(poolUsed == each.memory.poolUsed);
        CHECK(poolCapacity == each.memory.poolCapacity);
        CHECK(indexLength == each.memory.indexLength);
        CHECK(indexCapacity == each.memory.indexCapacity);
    }
    CHECK(KelText(holder.Text(15)).size() == 8190);
    CHECK(KelText(holder.Text(1000)).size() == 20000);
}

TEST_CASE("TextHolder: a dictionary that is cut or changed anywhere is not loaded at all") {
    Loader loader;
    for (const std::string& file : {EncodeDictionary(Sample()), Pack(EncodeDictionary(Sample()))}) {
        REQUIRE(loader.Load(file));
        CHECK_FALSE(loader.Load(file + "x"));
        for (std::size_t position = 0; position < file.size(); ++position) {
            CAPTURE(position);
            loader.holder.Add(u"old", 5);
            REQUIRE_FALSE(loader.Load(file.substr(0, position)));
            REQUIRE(loader.IsEmpty());
            for (const int change : {1, 0x80, 0xFF}) {
                std::string changed = file;
                changed[position] = static_cast<char>(changed[position] ^ change);
                REQUIRE_FALSE(loader.Load(changed));
                REQUIRE(loader.IsEmpty());
            }
        }
    }
    const KelText message = u"Error Opening Specified Dictionary\n" + FromPath(loader.folder / "diction.ary");
    CHECK(loader.Load("").Reason().text == message);
    const auto missing = loader.holder.Load({.fileName = loader.folder / "missing/diction.ary"});
    REQUIRE_FALSE(missing);
    CHECK(missing.Reason().text.starts_with(u"Error Opening Specified Dictionary\n"));
    CHECK(missing.Reason().text.find(u"diction.ary: ") != KelText::npos);
}

TEST_CASE("TextHolder: a file that claims more than it holds is refused, with a right checksum too") {
    const std::uint32_t huge = ~0U;
    struct Case {
        std::string_view what;
        std::string body;
        bool isLoaded;
    };
    const std::string languages = Body({{1, ""}, {2, "de"}, {1031, ""}, {0, ""}, {2, "DE"}});
    const Case cases[] = {
        {"nothing", "", false},
        {"no language, no entry", Body({{0, ""}, {0, ""}, {0, ""}}), true},
        {"2^32 languages", Body({{huge, ""}, {0, ""}, {0, ""}, {0, ""}, {0, ""}}), false},
        {"too many languages", Body({{256, std::string(256 * 16, '\0')}, {0, ""}, {0, ""}}), false},
        {"2^32 entries", Body({{0, ""}, {huge, std::string(1000, '\0')}}), false},
        {"one entry fewer than claimed", Body({{0, ""}, {2, std::string(20, '\0')}, {0, ""}}), false},
        {"an empty entry", languages + Body({{1, std::string(20, '\0')}, {0, ""}}), true},
        {"a phrase of 2^32", languages + Body({{1, ""}, {5, ""}, {huge, "abcdefghijklmnop"}, {0, ""}}), false},
        {"a translation too many",
         languages + Body({{1, ""}, {5, ""}, {0, ""}, {2, ""}, {0, ""}, {0, ""}, {0, ""}, {0, ""}, {0, ""}}), false},
        {"a further object", Body({{0, ""}, {0, ""}, {1, ""}, {77, ""}, {4, "blob"}}), true},
        {"2^32 further objects", Body({{0, ""}, {0, ""}, {huge, "abcdefgh"}}), false},
        {"bytes behind the end", Body({{0, ""}, {0, ""}, {0, "x"}}), false},
    };
    Loader loader;
    for (const Case& each : cases) {
        CAPTURE(each.what);
        CHECK(static_cast<bool>(loader.Load(PlainFile(each.body))) == each.isLoaded);
        CHECK(static_cast<bool>(loader.Load(Pack(PlainFile(each.body)))) == each.isLoaded);
    }
    CHECK_FALSE(loader.Load(Pack(std::string(maximumDictionarySize + 1, '\0'))));
    const std::string plain = EncodeDictionary(Sample());
    const std::string stream = Pack(plain).substr(28);
    for (const std::size_t size :
         {std::size_t{0}, plain.size() - 1, plain.size(), plain.size() + 1, maximumDictionarySize}) {
        CAPTURE(size);
        ObjectWriter packed;
        packed.Bytes(Header("TarvinDL packed\n", static_cast<std::uint32_t>(size)));
        packed.Number(Checksum(stream));
        packed.Bytes(stream);
        CHECK(static_cast<bool>(loader.Load(packed.Written())) == (size == plain.size()));
    }
}

TEST_CASE("TextHolder: entries with ids out of range are counted and skipped") {
    DictionaryContent content;
    for (const std::int32_t id : {-1, 0, 0x7FFFFFFF, highestTextId, highestTextId + 1, -0x7FFFFFFF - 1})
        content.entries.push_back({id, u"text"});
    Loader loader;
    REQUIRE(loader.Load(EncodeDictionary(content)));
    CHECK(loader.holder.SkippedEntryCount() == 4);
    CHECK(KelText(loader.holder.Text(0)) == u"text");
    CHECK(KelText(loader.holder.Text(highestTextId)) == u"text");
    CHECK(loader.holder.Memory().indexLength == highestTextId + 1);
}
