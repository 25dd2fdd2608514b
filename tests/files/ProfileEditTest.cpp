#include "files/ProfileEdit.h"

#include "files/Profile.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace std::string_literals;

TEST_CASE("an entry goes to its section in the file's own way, and every byte around it stays") {
    struct Case {
        std::string before;
        std::string after;
    };
    const Case cases[] = {
        {"", "[P]\nk=v\n"},
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
}
