#include "protocol/Frame.h"

#include <doctest/doctest.h>

using namespace tarvin;

TEST_CASE("Frame: the checksum is the one of the controllers, and always prints") {
    struct Case {
        std::string text;
        char checksum;
    };
    const Case cases[] = {
        {"AAAK", 'q'},
        {"AAAK01", 'P'},
        {"AAAK03", 'N'},
        {"AATS", 'V'},
        {"AAEF", 'r'},
        {"AADAN10G90", 'Y'},
        {"ABAK", 'p'},
        {"ABNK", 'c'},
        {"", '?'},
        {std::string(1, 95), ' '},
        {std::string(1, 96), '_'},
        {std::string(1, '\x80'), '?'},
    };
    for (const Case& each : cases) {
        CAPTURE(each.text);
        CHECK(MessageChecksum(each.text) == each.checksum);
    }
    for (int byte = 0; byte < 256; ++byte) {
        const char checksum = MessageChecksum(std::string(1, static_cast<char>(byte)));
        CHECK(checksum >= 32);
        CHECK(checksum <= 126);
    }
}

TEST_CASE("Frame: a message that is cut short gives no more than it holds") {
    CHECK(DataPayload("ABADN10x") == "N10");
    CHECK(DataPayload("xxABADABADx") == "ABAD");
    CHECK(DataPayload("ABADx").empty());
    CHECK(DataPayload("ABAD").empty());
    CHECK(FileNumber("ABST00123x") == "123");
    CHECK(FileNumber("ABSE5x") == "5");
    CHECK(FileNumber("ABST0000").empty());
    CHECK(FileNumber("ABS").empty());
    CHECK(FileNumber("").empty());
}
