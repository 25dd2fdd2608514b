#include "files/Profile.h"

#include <cstdint>
#include <limits>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("a key is found by the rules of the private-profile calls") {
    struct Case {
        std::string content;
        KelText value; // "none" where no such key is to be found
    };
    const Case cases[] = {{"[Port]\nkey=COM3", u"COM3"},
                          {"[PORT]\r\nKEY=COM3\r\n", u"COM3"},
                          {"\t[ port ] ; the first [port]\n \tkey\t = \tCOM 3 \t\n", u"COM 3"},
                          {"[other]\rkey=1\r[port]\rkey=2\r", u"2"},
                          {"[port]\nkey=1\nkey=2\n[port]\nkey=3\n", u"1"},
                          {"[port]\nother=1\n[port]\nkey=2\n", u"none"},
                          {"[port]\n;key=1\n  ; key=2\nkey=a;b=c\n", u"a;b=c"},
                          {"[port]\nkey=\n", u""},
                          {"[port]\nkey\nkey2=1\n", u"none"},
                          {"key=1\n[port]\n", u"none"},
                          {"[port\nkey=1\n", u"none"},
                          {"[port]\nkey=\" a \"\n", u" a "},
                          {"[port]\nkey='a'\n", u"a"},
                          {"[port]\nkey=\"\"a\"\"\n", u"\"a\""},
                          {"[port]\nkey=\"a'\n", u"\"a'"},
                          {"[port]\nkey=\"\n", u"\""},
                          {"[port]\nkey=\"\"\n", u""},
                          {"", u"none"},
                          {"[", u"none"},
                          {"]", u"none"},
                          {"=", u"none"},
                          {"[]\n=\n[port]=\nkey=1", u"1"}};
    for (const Case& each : cases) {
        CAPTURE(each.content);
        CHECK(ToUtf8(Profile(each.content).Text(u"Port", u"Key", u"none")) == ToUtf8(each.value));
    }
}

TEST_CASE("a profile means the same in every encoding, and what is none has no sections") {
    using namespace std::string_literals;
    const std::string littleEndian = "\xFF\xFE[\0p\0]\0\r\0\n\0k\0=\0\xAC\x20\xFC\0"s;
    const std::string bigEndian = "\xFE\xFF\0[\0p\0]\0\n\0k\0=\x20\xAC\0\xFC"s;
    for (const std::string& content : {littleEndian, littleEndian + "x", bigEndian, "[p]\nk=\xE2\x82\xAC\xC3\xBC"s,
                                       "\xEF\xBB\xBF[p]\nk=\xE2\x82\xAC\xC3\xBC"s})
        CHECK(Profile(content).Text(u"p", u"k", u"") == u"\u20AC\u00FC");
    CHECK(Profile("[p]\nk=\xFC\xE2\x82").Text(u"p", u"k", u"") == u"\u00FC\u00E2\u0082");
    CHECK(Profile("[p]\nk=a\0b"s).Text(u"p", u"k", u"") == u"a");
    std::string garbage;
    for (int byte = 0; byte < 512; ++byte) {
        garbage.push_back(static_cast<char>(byte * 3));
        for (const char* mark : {"", "\xFF\xFE", "\xFE\xFF", "\xEF\xBB\xBF"})
            REQUIRE_FALSE(Profile(mark + garbage).HasSection(u"p"));
    }
}

TEST_CASE("values are cut, never within a surrogate pair, and default texts are not") {
    const Profile profile("[p]\nlong=" + std::string(100, 'x') + "\npair=" + std::string(78, 'x') + "\xF0\x9F\x98\x80");
    const KelText cut(79, u'x');
    CHECK(profile.Text(u"p", u"long", u"") == cut);
    CHECK(profile.Text(u"p", u"missing", KelText(100, u'x')) == KelText(100, u'x'));
    CHECK(profile.Text(u"p", u"long", u"", 1000).size() == 100);
    CHECK(profile.Text(u"p", u"pair", u"") == KelText(78, u'x'));
    CHECK(profile.Text(u"p", u"pair", u"", 80).size() == 80);
}

TEST_CASE("a number is what the value begins with") {
    struct Case {
        std::string value;
        std::int32_t number;
    };
    const Case cases[] = {{"12", 12},
                          {"12.9", 12},
                          {"007x", 7},
                          {"' 5'", 5},
                          {"-3", -3},
                          {"+3", 3},
                          {"--3", 0},
                          {"abc", 0},
                          {"", 0},
                          {"-", 0},
                          {"4294967297", 1},
                          {"2147483647", 2147483647},
                          {"0x10", 0},
                          {"- 3", 0},
                          {"3 4", 3},
                          {"-2147483648", std::numeric_limits<std::int32_t>::min()},
                          {"100000000000000000000", 1661992960}};
    for (const Case& each : cases) {
        CAPTURE(each.value);
        const Profile profile("[p]\nk=" + each.value);
        CHECK(profile.Integer(u"p", u"k", 77) == each.number);
        CHECK(profile.Integer(u"p", u"missing", 77) == 77);
    }
}
