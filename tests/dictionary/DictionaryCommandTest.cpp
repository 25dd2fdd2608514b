#include "dictionary/DictionaryCommand.h"

#include "dictionary/DictionaryFile.h"
#include "dictionary/TextHolder.h"
#include "harness/TemporaryFolder.h"

#include <sstream>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::dictionary::RunDictionaryCommand;
using tarvin::test::TemporaryFolder;

namespace {

struct CommandOutcome {
    int exitCode;
    std::string errors;
};

class Tool {
public:
    CommandOutcome Run(const KelText& command, const std::string& input, const std::string& output,
                       bool compresses = false) {
        std::vector<KelText> arguments = {command, FromPath(folder / input), FromPath(folder / output)};
        if (compresses)
            arguments.insert(arguments.begin() + 1, u"--compress");
        std::ostringstream said;
        std::ostringstream errors;
        const int exitCode = RunDictionaryCommand(arguments, said, errors);
        return {exitCode, errors.str()};
    }
    CommandOutcome Compile(const std::string& xml) {
        folder.WriteFile("in.xml", xml);
        return Run(u"compile", "in.xml", "out.ary");
    }

    TemporaryFolder folder;
};

// A dictionary of one language. The entries begin in line 3.
std::string WithEntries(const std::string& entries) {
    return "<Dictionary>\n<Language folder='German' lcid='1031' codepage='1252'>Deutsch</Language>\n" + entries +
           "</Dictionary>\n";
}

std::string Entry(const std::string& fields) {
    return WithEntries("<Entry>\n" + fields + "</Entry>\n");
}

}

TEST_CASE(
    "DictionaryCommand: every text that XML allows comes back unchanged, and a second round gives the same bytes") {
    DictionaryContent content;
    content.languages = {{u"a\"<&>'\t\n\r b", -1, 0x7FFFFFFF, u" \u00E9 \n"}, {u"", 0, 0, u""}};
    content.entries = {
        {0, u" lead\r\n\ttrail\r", {u"\"quoted\" 'and' <tags> &amp; ]]>", u"\xD83D\xDE00\uFFFD\u007F\u0085\u2028"}},
        {highestTextId, u"", {}, u"TXTPOS_MAIN", u"--> comment"},
        {1, KelText(100'000, u'\u20AC'), {u"", u""}, u"TXTPOS_VOID", u"\n"}};
    Tool tool;
    tool.folder.WriteFile("plain.ary", EncodeDictionary(content));
    REQUIRE(tool.Run(u"export", "plain.ary", "1.xml").exitCode == 0);
    for (const bool compresses : {false, true}) {
        REQUIRE(tool.Run(u"compile", "1.xml", "1.ary", compresses).exitCode == 0);
        REQUIRE(tool.Run(u"export", "1.ary", "2.xml").exitCode == 0);
        REQUIRE(tool.Run(u"compile", "2.xml", "2.ary", compresses).exitCode == 0);
        CHECK(tool.folder.ReadFile("1.xml") == tool.folder.ReadFile("2.xml"));
        CHECK(tool.folder.ReadFile("1.ary") == tool.folder.ReadFile("2.ary"));
        CHECK((tool.folder.ReadFile("1.ary") == tool.folder.ReadFile("plain.ary")) == !compresses);
    }
    DictionaryReader reader;
    REQUIRE(reader.Open(tool.folder.ReadFile("2.ary")));
    CHECK(ReadContent(reader) == content);
}

TEST_CASE("DictionaryCommand: wrong XML is refused with its line, and the old output stays") {
    struct Case {
        std::string xml;
        std::string fault; // after "line "
    };
    const std::string right = "<id>1</id><phrase>x</phrase>";
    const std::string entity = "<!DOCTYPE Dictionary [\n<!ENTITY a 'aaaa'>]>\n";
    const Case cases[] = {
        {"", "1: no element found"},
        {"<Dictionary>\n</Dictionary>", "2: there is no <Entry>"},
        {WithEntries(""), "3: there is no <Entry>"},
        {"<Dictionary>\n<Language folder='a' lcid='1' codepage='1'>A</Language>\n"
         "<Language folder='b' lcid='1' codepage='1'>A</Language>\n",
         "3: the language name \"A\" is given twice"},
        {"<Dictionary>\n<Language folder='a' lcid='1' codepage='1'>A</Language>\n"
         "<Language folder='a' lcid='1' codepage='1'>B</Language>\n",
         "3: the language folder \"a\" is given twice"},
        {"<Dictionary>\n<Entry>" + right + "</Entry></Dictionary>", ""},
        {"<Dictionary>\n", "2: no element found"},
        {"<Other/>", "1: unknown element <Other>"},
        {Entry(right) + "<Dictionary/>", "6: junk"},
        {entity + WithEntries(""), "1: a document type"},
        {Entry(right + "<comment>&a;</comment>"), "4: undefined entity"},
        {Entry(right + "<comment>\x01</comment>"), "4: not well-formed"},
        {Entry(right + "<comment>&#1;</comment>"), "4: reference to invalid character"},
        {Entry(right + "<comment>\xFF</comment>"), "4: not well-formed"},
        {Entry(right + "<comment>\n</Entry>"), "5: mismatched tag"},
        {Entry(right + "\n<Entry/>"), "5: <Entry> stands in the wrong place"},
        {Entry("<id>1<phrase>x</phrase></id>"), "4: <phrase> stands in the wrong place"},
        {WithEntries("<id>1</id>"), "3: <id> stands in the wrong place"},
        {WithEntries("\ntext"), "4: text stands in the wrong place"},
        {Entry(right + "text"), "4: text stands in the wrong place"},
        {Entry("\n<id n='1'>1</id>"), "5: <id> has no attribute n"},
        {Entry("<phrase>x</phrase>\n"), "5: the entry has no <id>"},
        {Entry("<id>1</id>\n\n"), "6: the entry has no <phrase>"},
        {Entry(right + "\n<id>2</id>"), "5: the entry has an element twice"},
        {Entry(right), ""},
        {WithEntries("<Entry>" + right + "</Entry>\n<Entry><phrase>y</phrase><id>1</id></Entry>"),
         "4: the text id 1 is given twice"},
        {Entry(right + "<translation/>\n<translation/>"), "5: the entry has more translations"},
        {Entry(right + "<textpos>MAIN</textpos>"), "4: a text position begins with TXTPOS_"},
        {WithEntries("<Entry>" + right + "</Entry>\n<Language folder='' lcid='0' codepage='0'/>"),
         "4: <Language> stands behind"},
        {"<Dictionary>\n<Language folder='' lcid='0'/>", "2: <Language> needs"},
        {"<Dictionary>\n<Language folder='' lcid='0' code='0'/>", "2: <Language> has no attribute code"},
        {"<Dictionary>\n<Language folder='' lcid='' codepage='0'/>", "2: \"\" is no number"},
        {"<Dictionary>\n<Language folder='' lcid='1' codepage='2147483648'/>", "2: \"2147483648\" is no number"},
    };
    Tool tool;
    for (const Case& each : cases) {
        CAPTURE(each.xml);
        tool.folder.WriteFile("out.ary", "old");
        const CommandOutcome result = tool.Compile(each.xml);
        CAPTURE(result.errors);
        CHECK(result.exitCode == (each.fault.empty() ? 0 : 1));
        CHECK((tool.folder.ReadFile("out.ary") == "old") == !each.fault.empty());
        const bool isNamed = result.errors.find("in.xml: line " + each.fault) != std::string::npos;
        CHECK(isNamed == !each.fault.empty());
    }
    for (const std::string id : {"", "-1", "1000000", "2147483647", "99999999999", "0x1", "1.5", "1 2", "one"}) {
        CAPTURE(id);
        const CommandOutcome result = tool.Compile(Entry("<id>" + id + "</id><phrase>x</phrase>"));
        CHECK(result.errors.find("line 4: \"" + id + "\" is no text id") != std::string::npos);
    }
}

TEST_CASE("DictionaryCommand: a dictionary that XML cannot hold is not exported") {
    const DictionaryLanguage german = {u"German", 1031, 1252, u"Deutsch"};
    struct Case {
        DictionaryContent content;
        std::string fault;
    };
    const DictionaryLanguage other = {u"other", 0, 0, u"Deutsch"};
    const Case cases[] = {
        {{{german}, {}}, "there is no <Entry>"},
        {{{german, other}, {{1, u"a"}}}, "language 2: the language name \"Deutsch\" is given twice"},
        {{{german}, {{1, u"a", {u"A"}}, {1, u"b"}}}, "entry 2 (id 1): the text id 1 is given twice"},
        {{{german}, {{0, u"a\nb"}, {-1, u"a"}}}, "entry 2 (id -1): \"-1\" is no text id (0 to 999999)"},
        {{{german}, {{1, u"bell \x07"}}}, "entry 1 (id 1): "},
        {{{german}, {{1, u"no UTF-8 \xDC80"}}}, "entry 1 (id 1): "},
        {{{german}, {{1, u"no character \uFFFE"}}}, "entry 1 (id 1): "},
        {{{german}, {{2, u"a", {}, u"elsewhere"}}}, "entry 1 (id 2): a text position begins with TXTPOS_"},
    };
    Tool tool;
    for (const Case& each : cases) {
        CAPTURE(each.fault);
        tool.folder.WriteFile("in.ary", EncodeDictionary(each.content));
        const CommandOutcome result = tool.Run(u"export", "in.ary", "out.xml");
        CHECK(result.exitCode == 1);
        CHECK_MESSAGE(result.errors.find("in.ary: gives no right XML: " + each.fault) != std::string::npos,
                      result.errors);
        CHECK_FALSE(std::filesystem::exists(tool.folder / "out.xml"));
    }
    // Without a language it loads, in English, so it is exported too.
    tool.folder.WriteFile("in.ary", EncodeDictionary({{}, {{1, u"a"}}}));
    CHECK(tool.Run(u"export", "in.ary", "english.xml").exitCode == 0);
    CHECK(tool.Run(u"compile", "english.xml", "english.ary").exitCode == 0);
    CHECK(tool.folder.ReadFile("english.ary") == tool.folder.ReadFile("in.ary"));
    tool.folder.WriteFile("in.ary", EncodeDictionary({{german}, {}}).substr(0, 40));
    CHECK(tool.Run(u"export", "in.ary", "out.xml").errors.find("in.ary: is damaged") != std::string::npos);
}

TEST_CASE("DictionaryCommand: wrong usage and a failed input or output have different exit codes") {
    const std::vector<std::vector<KelText>> wrong = {{},
                                                     {u"compile"},
                                                     {u"compile", u"a"},
                                                     {u"compile", u"a", u"b", u"c"},
                                                     {u"convert", u"a", u"b"},
                                                     {u"compile", u"--compress", u"a"},
                                                     {u"export", u"--compress", u"a", u"b"},
                                                     {u"--help", u"a"}};
    for (const auto& arguments : wrong) {
        std::ostringstream output;
        std::ostringstream errors;
        CHECK(RunDictionaryCommand(arguments, output, errors) == 2);
        CHECK(errors.str().starts_with("Usage:"));
    }
    Tool tool;
    CHECK(tool.Run(u"compile", "missing.xml", "out.ary").exitCode == 1);
    std::filesystem::create_directory(tool.folder / "folder");
    CHECK(tool.Run(u"compile", "folder", "out.ary").exitCode == 1);
    REQUIRE(tool.Compile(Entry("<id>1</id><phrase>x</phrase>")).exitCode == 0);
    for (const char* output : {"folder", "missing/out.ary", "in.xml/out.ary"}) {
        const CommandOutcome result = tool.Run(u"compile", "in.xml", output);
        CHECK(result.exitCode == 1);
        CHECK(result.errors.find("cannot be written") != std::string::npos);
    }
}
