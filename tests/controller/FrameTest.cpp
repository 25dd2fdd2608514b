#include "controller/ControllerFrame.h"
#include "controller/Misbehaviour.h"
#include "controller/NcLines.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin::controller;

TEST_CASE("checksums are those that controllers compute") {
    struct Row {
        std::string_view text;
        char checksum;
    };
    // The last three leave 33, 32 and 0 before they are made printable.
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

TEST_CASE("damage to a received line always shows in its checksum") {
    MisbehaviourSettings settings;
    settings.garbleReceived = 300'000;
    settings.dropReceived = 300'000;
    for (settings.seed = 0; settings.seed < 200; ++settings.seed) {
        Misbehaviour misbehaviour(settings);
        for (const std::string_view text : {"AADA@@@@", "AADAN10 G1 X5", "AADA ", "AADA\xC0\x80@"}) {
            std::string frame(text);
            frame += ChecksumOf(text);
            if (misbehaviour.DamagesReceived(frame)) {
                misbehaviour.DamageReceived(frame);
                CHECK_FALSE(HasRightChecksum(frame));
            }
        }
        CHECK_FALSE(misbehaviour.DamagesReceived("AAEFr"));
    }
}

TEST_CASE("noise is only what the program has to ignore, and nothing stops the line") {
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

TEST_CASE("pieces of a message make up the message") {
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

TEST_CASE("an NC file's lines are those that the program would send") {
    std::string error;
    using Lines = std::vector<std::string>;
    CHECK(SplitNcLines("a\r\nb\n\n\r\n c \nd", error) == Lines{"a", "b", " c ", "d"});
    CHECK(SplitNcLines("\n\r\n", error) == Lines{});
    CHECK_FALSE(SplitNcLines("a\nb\rc\n", error));
    CHECK(error == "line 2 holds a carriage return that does not end it");
}
