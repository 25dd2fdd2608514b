#include "ui/CaretMoves.h"
#include "ui/Contrast.h"
#include "ui/StatusShortening.h"
#include "ui/TextSearch.h"
#include "ui/TrafficPainter.h"
#include "ui/TrafficTime.h"

#include <doctest/doctest.h>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

TextLines LinesOf(std::initializer_list<const char*> texts) {
    TextLines lines;
    for (const char* text : texts)
        lines.Append({TextLines::Kind::Received, text});
    return lines;
}

}

TEST_CASE("TextSearch: it finds each place in either direction and goes on at the other end") {
    const TextLines lines = LinesOf({"RX ABAD one", "tx abad", "none", "aBaDABAD"});
    const TextSearch search(u"abad");
    struct Step {
        TextLines::Position from;
        TextLines::Position next;
        bool hasNextWrapped;
        TextLines::Position previous;
        bool hasPreviousWrapped;
    };
    const Step steps[] = {
        {{0, 0}, {0, 3}, false, {3, 4}, true},  {{0, 3}, {0, 3}, false, {3, 4}, true},
        {{0, 4}, {1, 3}, false, {0, 3}, false}, {{1, 4}, {3, 0}, false, {1, 3}, false},
        {{3, 1}, {3, 4}, false, {3, 0}, false}, {{3, 5}, {0, 3}, true, {3, 4}, false},
    };
    for (const Step& step : steps) {
        CAPTURE(step.from.line);
        CAPTURE(step.from.column);
        const auto next = search.Next(lines, step.from);
        const auto previous = search.Previous(lines, step.from);
        REQUIRE(next);
        REQUIRE(previous);
        CHECK((next->begin == step.next && next->hasWrapped == step.hasNextWrapped));
        CHECK((previous->begin == step.previous && previous->hasWrapped == step.hasPreviousWrapped));
        CHECK(next->end.column == next->begin.column + 4);
    }
    CHECK_FALSE(TextSearch(u"abef").Next(lines, {1, 2}));
    CHECK_FALSE(TextSearch(u"abef").Previous(lines, {1, 2}));
    CHECK_FALSE(TextSearch(u"").Next(lines, {0, 0}));
    CHECK(TextSearch(u"\u00DCBER").FindIn(U"x \u00FCber", 0) == 2);
}

TEST_CASE("CaretMoves: keys reach the ends of lines and of the text, and keep the column over short lines") {
    const TextLines lines = LinesOf({"0123456789", "01", "0123456789", "012345"});
    struct Case {
        TextLines::Position from;
        CaretMove move;
        std::size_t wanted;
        TextLines::Position to;
    };
    const Case cases[] = {
        {{0, 7}, CaretMove::Down, 7, {1, 2}},     {{1, 2}, CaretMove::Down, 7, {2, 7}},
        {{3, 4}, CaretMove::Down, 4, {3, 6}},     {{0, 4}, CaretMove::Up, 4, {0, 0}},
        {{1, 1}, CaretMove::PageUp, 8, {0, 8}},   {{1, 1}, CaretMove::PageDown, 8, {3, 6}},
        {{1, 2}, CaretMove::Right, 2, {2, 0}},    {{2, 0}, CaretMove::Left, 0, {1, 2}},
        {{0, 3}, CaretMove::LineEnd, 3, {0, 10}}, {{2, 3}, CaretMove::TextStart, 3, {0, 0}},
        {{1, 1}, CaretMove::TextEnd, 1, {3, 6}},  {{3, 6}, CaretMove::Right, 6, {3, 6}},
        {{0, 0}, CaretMove::Left, 0, {0, 0}},     {{2, 5}, CaretMove::LineStart, 5, {2, 0}},
    };
    for (const Case& entry : cases) {
        CAPTURE(static_cast<int>(entry.move));
        CAPTURE(entry.from.line);
        CHECK(Moved(lines, entry.from, entry.move, entry.wanted, 3) == entry.to);
    }
}

TEST_CASE("TrafficTime: the gutter tells milliseconds, and stands in copies of whole lines alone") {
    const Clock::TimePoint start{};
    TextLines lines;
    const std::pair<const char*, Clock::Duration> texts[] = {{"RX a", 0ms}, {"TX b", 12ms}, {"RX c", 3725012ms}};
    for (const auto& [text, time] : texts)
        lines.Append({TextLines::Kind::Received, text, false, start + time});
    // A line keeps the time of its beginning.
    lines.Append({TextLines::Kind::Received, "more", true, start + 2h});
    TrafficTime time;
    const std::chrono::system_clock::time_point noon{12h + 59min + 59s + 990ms};
    time.Synchronise(noon, start);
    CHECK(time.Text(Gutter::SinceLast, lines, 0) == "            ");
    CHECK(time.Text(Gutter::SinceLast, lines, 1) == "      +0.012");
    CHECK(time.Text(Gutter::SinceLast, lines, 2) == "   +3725.000");
    // The hour depends on the place; the minutes do in few of them.
    CHECK(time.Text(Gutter::TimeOfDay, lines, 0).ends_with(":59.990"));
    CHECK(time.Text(Gutter::TimeOfDay, lines, 1).ends_with(":00.002"));
    CHECK(time.Text(Gutter::TimeOfDay, lines, 1).size() == TrafficTime::columns);

    const auto head = [&](std::uint64_t number) { return time.Text(Gutter::SinceLast, lines, number) + "  "; };
    lines.Select({0, 1}, {1, 2});
    CHECK(lines.SelectedText(head) == "X a\n      +0.012  TX");
    lines.Select({1, 0}, {1, 2});
    CHECK(lines.SelectedText(head) == "TX");
    CHECK(lines.AllText(head) == "              RX a\r\n      +0.012  TX b\r\n   +3725.000  RX cmore\r\n");
}

TEST_CASE("TrafficColours: all text can be read on light, dark and odd grounds") {
    for (const char* ground :
         {"#FFFFFF", "#F6F5F4", "#2D2D2D", "#000000", "#1E1E1E", "#808080", "#FFFFE0", "#003366"}) {
        CAPTURE(ground);
        const TrafficColours colours = TrafficColoursOn(wxColour(ground));
        CHECK(Contrast(colours.received, colours.ground) >= textContrast);
        CHECK(Contrast(colours.transmitted, colours.ground) >= textContrast);
        CHECK(Contrast(colours.gutter, colours.ground) >= textContrast);
        CHECK(Contrast(colours.gutter, colours.noteGround) >= textContrast);
        CHECK(Contrast(colours.note, colours.noteGround) >= textContrast);
        CHECK(Contrast(colours.found, colours.foundGround) >= textContrast);
        CHECK(colours.received != colours.transmitted);
    }
}

TEST_CASE("ShortenStatus: it shortens folders, and never a number or a word") {
    const auto shortened = [](const char* text, std::size_t most) {
        return ShortenStatus(wxString::FromUTF8(text), [most](const wxString& tried) { return tried.length() <= most; })
            .utf8_string();
    };
    const char* running = "Downloading /home/shop/machines/laser 2/4711.nc - 5 of 10 bytes sent.";
    CHECK(shortened(running, 200) == running);
    CHECK(shortened(running, 60) == "Downloading /home/sh\u2026s/laser 2/4711.nc - 5 of 10 bytes sent.");
    CHECK(shortened(running, 10) == "Downloading \u2026/4711.nc - 5 of 10 bytes sent.");
    CHECK(shortened("Upload could not open/write to C:\\Shop\\NC\\4711.nc: C:\\Shop is gone", 10) ==
          "Upload could not open/write to \u2026\\4711.nc: \u2026\\Shop is gone");
    CHECK(shortened("Over Run Error! Data loss has occurred!", 10) == "Over Run Error! Data loss has occurred!");
    CHECK(shortened("Upload Completed /4711.nc - 3 bytes in file.", 10) ==
          "Upload Completed /4711.nc - 3 bytes in file.");
}

}
