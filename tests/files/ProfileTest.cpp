#include "files/Profile.h"

#include <cstdint>
#include <limits>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::string_literals;

TEST_CASE("Profile: a key is found by the rules of the private-profile calls") {
    struct Case {
        std::string content;
        KelText value; // "none" if the key must not be found
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

TEST_CASE("Profile: every encoding means the same, and other bytes have no sections") {
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

TEST_CASE("Profile: values are cut, never within a surrogate pair, and default texts are not") {
    const Profile profile("[p]\nlong=" + std::string(100, 'x') + "\npair=" + std::string(78, 'x') + "\xF0\x9F\x98\x80");
    const KelText cut(79, u'x');
    CHECK(profile.Text(u"p", u"long", u"") == cut);
    CHECK(profile.Text(u"p", u"missing", KelText(100, u'x')) == KelText(100, u'x'));
    CHECK(profile.Text(u"p", u"long", u"", 1000).size() == 100);
    CHECK(profile.Text(u"p", u"pair", u"") == KelText(78, u'x'));
    CHECK(profile.Text(u"p", u"pair", u"", 80).size() == 80);
}

TEST_CASE("Profile: a number is what the value begins with") {
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

TEST_CASE("WithProfileEntry: an entry joins its section in the form of the file, and every other byte stays") {
    struct Case {
        std::string before;
        std::string after;
    };
    const Case cases[] = {
        {"", "[P]\r\nk=v\r\n"},
        {"[O]\r\na=1", "[O]\r\na=1\r\n[P]\r\nk=v\r\n"},
        {"[O]\na=1\n", "[O]\na=1\n[P]\nk=v\n"},
        {"\xEF\xBB\xBF[O]\n\xC3\xBC=1\n[ p ]\r\n\n[Q]", "\xEF\xBB\xBF[O]\n\xC3\xBC=1\n[ p ]\r\nk=v\r\n\n[Q]"},
        {"\xFC=1\n[p]", "\xFC=1\n[p]\nk=v"},
        {"[P]\na=1\n\n; of the next\n[Q]\n[P]\nb=2\n", "[P]\na=1\nk=v\n\n; of the next\n[Q]\n[P]\nb=2\n"},
        {"[P]\ra=1\r[Q]\r", "[P]\ra=1\rk=v\r[Q]\r"},
        {"[P]\na=1\0b=2"s, "[P]\na=1\0b=2\nk=v"s},
        {"[P\n", "[P\n[P]\nk=v\n"},
        {"\xFF\xFE[\0p\0]\0\n\0[\0q\0]\0x"s, "\xFF\xFE[\0p\0]\0\n\0k\0=\0v\0\n\0[\0q\0]\0x"s},
        {"\xFE\xFF\0\r"s, "\xFE\xFF\0\r\0[\0P\0]\0\r\0k\0=\0v\0\r"s},
    };
    for (const Case& each : cases) {
        CAPTURE(each.before);
        const std::string after = WithProfileEntry(each.before, u"P", u"k", u"v");
        CHECK(after == each.after);
        CHECK(Profile(after).Text(u"P", u"k", u"") == u"v");
    }
    for (const std::string mark : {"", "\xEF\xBB\xBF", "\xFF\xFE", "\xFE\xFF"}) {
        const Profile profile(WithProfileEntry(mark, u"P", u"k", u"/dev/\u20AC"));
        CHECK(profile.Text(u"P", u"k", u"") == u"/dev/\u20AC");
    }
}
