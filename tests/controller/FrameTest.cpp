#include "controller/ControllerFrame.h"
#include "controller/Misbehaviour.h"
#include "controller/NcLines.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin::controller;

TEST_CASE("ControllerFrame: checksums are those of real controllers") {
    struct Row {
        std::string_view text;
        char checksum;
    };
    // Before they become printable, the checksums of the last three are 33, 32 and 0.
    const Row table[] = {{"AAAK", 'q'}, {"AAAK01", 'P'}, {"AAAK03", 'N'}, {"AATS", 'V'},
                         {"AAEF", 'r'}, {"ABAK", 'p'},   {"ABNK", 'c'},   {"AADAN10G90", 'Y'},
                         {"", '?'},     {"\xDF", ' '},   {"\xE0", '_'},   {"\x80", '?'}};
    for (const Row& row : table) {
        CAPTURE(row.text);
        std::string frame;
        BuildFrame(row.text, frame);
        CHECK(frame == std::string(row.text) + row.checksum + '\r');
        frame.pop_back();
        CHECK(HasRightChecksum(frame));
        frame.back() ^= 2;
        CHECK_FALSE(HasRightChecksum(frame));
    }
    CHECK_FALSE(HasRightChecksum(""));
}

TEST_CASE("Misbehaviour: damage to a received line always makes its checksum wrong") {
    MisbehaviourSettings settings;
    settings.garbleReceived = 300'000;
    settings.dropReceived = 300'000;
    for (settings.seed = 0; settings.seed < 200; ++settings.seed) {
        Misbehaviour misbehaviour(settings);
        for (const std::string_view text : {"AADA@@@@", "AADAN10 G1 X5", "AADA ", "AADA\xC0\x80@"}) {
            std::string frame(text);
            frame += MessageChecksum(text);
            if (misbehaviour.DamagesReceived(frame)) {
                misbehaviour.DamageReceived(frame);
                CHECK_FALSE(HasRightChecksum(frame));
            }
        }
        CHECK_FALSE(misbehaviour.DamagesReceived("AAEFr"));
    }
}

TEST_CASE("Misbehaviour: noise is only bytes that the program has to ignore, without XOFF and XON") {
    MisbehaviourSettings settings;
    settings.noise = 1'000'000;
    for (const std::uint32_t garble : {0U, 1'000'000U}) {
        settings.garble = garble;
        Misbehaviour misbehaviour(settings);
        for (int round = 0; round < 500; ++round) {
            std::string frame = "ABADN10 S3 Q1q\r";
            const std::string meant = frame;
            const bool isDamaged = misbehaviour.Distort(frame) == Misbehaviour::Fate::Damaged;
            CHECK(isDamaged == (garble != 0));
            CHECK(frame.size() > meant.size());
            CHECK(frame.find_first_of("\x11\x13") == std::string::npos);
            std::erase_if(frame, [](char c) { return c != '\r' && (c < 0x20 || c > 0x7E); });
            CHECK((isDamaged || frame == meant));
        }
    }
}

TEST_CASE("Misbehaviour: the pieces of a message are the whole message") {
    MisbehaviourSettings settings;
    settings.splitsMessages = true;
    Misbehaviour misbehaviour(settings);
    for (std::size_t size = 1; size < 200; ++size) {
        const auto& ends = misbehaviour.Cut(size);
        CHECK(ends.back() == size);
        CHECK(ends.front() > 0);
        CHECK(std::ranges::adjacent_find(ends, std::greater_equal<>()) == ends.end());
    }
}

TEST_CASE("NcLines: an NC file gives the lines that the program would send") {
    using Lines = std::vector<std::string>;
    CHECK(*SplitNcLines("a\r\nb\n\n\r\n c \nd") == Lines{"a", "b", " c ", "d"});
    CHECK(SplitNcLines("\n\r\n")->empty());
    const auto refused = SplitNcLines("a\nb\rc\n");
    REQUIRE_FALSE(refused);
    CHECK(refused.Reason().text == u"line 2 holds a carriage return that does not end it");
}
