#include "base/KelText.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("KelText: any bytes come back unchanged from UTF-8 and from a path") {
    std::string everyByte;
    for (int byte = 0; byte < 256; ++byte)
        everyByte.push_back(static_cast<char>(byte));
    const std::string samples[] = {
        "",
        "plain",
        "gr\xC3\xB6\xC3\x9F"
        "er",
        "\xE2\x82\xAC",
        "\xF0\x9F\x98\x80",
        everyByte,
        "\xC3",             // cut short
        "\xE2\x82",         // cut short
        "\xC0\xAF",         // overlong
        "\xED\xB2\x80",     // a surrogate spelt as UTF-8
        "\xF5\x80\x80\x80", // beyond the last code point
        "\xFF\xFE",
    };
    for (const std::string& sample : samples) {
        CAPTURE(sample);
        CHECK(ToUtf8(FromUtf8(sample)) == sample);
        CHECK(ToUtf8(FromPath(ToPath(FromUtf8(sample)))) == sample);
    }
    CHECK(FromUtf8("\xF0\x9F\x98\x80") == u"\xD83D\xDE00");
    CHECK(ToUtf8(u"\xD800") == "\xEF\xBF\xBD");
}
