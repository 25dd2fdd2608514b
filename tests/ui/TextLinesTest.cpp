#include "ui/TextLines.h"

#include <doctest/doctest.h>

namespace tarvin::test {

namespace {

std::string Text(const TextLines& lines, std::uint64_t number) {
    const std::u32string& text = lines.At(number).text;
    return std::string(text.begin(), text.end());
}

}

TEST_CASE("TextLines: a full list drops its oldest line, from the selection too") {
    TextLines lines;
    for (std::size_t number = 0; number < TextLines::capacity; ++number)
        lines.Append({TextLines::Kind::Received, std::to_string(number)});
    CHECK(Text(lines, lines.First()) == "0");
    lines.Select({0, 0}, {2, 1});
    CHECK(lines.SelectedText() == "0\n1\n2");
    lines.Append({TextLines::Kind::Received, "5000"});
    CHECK(lines.Count() == TextLines::capacity);
    CHECK(Text(lines, lines.First()) == "1");
    CHECK(Text(lines, lines.End() - 1) == "5000");
    CHECK(lines.SelectedText() == "1\n2");
    lines.Append({TextLines::Kind::Received, ""});
    lines.Append({TextLines::Kind::Received, ""});
    CHECK_FALSE(lines.HasSelection());
    lines.Clear();
    CHECK(lines.Count() == 0);
    CHECK(lines.SelectedText().empty());
}

TEST_CASE("TextLines: a tab reaches to the next multiple of sixteen columns") {
    TextLines lines;
    const std::pair<const char*, std::size_t> cases[] = {
        {"\tx", 16}, {"a\tx", 16}, {"123456789012345\tx", 16}, {"1234567890123456\tx", 32}, {"a\t\tx", 32}};
    for (const auto& [text, column] : cases) {
        lines.Append({TextLines::Kind::Note, text});
        CHECK(Text(lines, lines.End() - 1).find('x') == column);
    }
}

TEST_CASE("TextLines: a text extends a line of its own kind only") {
    TextLines lines;
    lines.Append({TextLines::Kind::Transmitted, "TX A", true});
    lines.Append({TextLines::Kind::Transmitted, "B\tC", true});
    CHECK(Text(lines, lines.End() - 1) == "TX AB           C");
    lines.Append({TextLines::Kind::Received, "RX x"});
    lines.Append({TextLines::Kind::Transmitted, "D", true});
    CHECK(lines.Count() == 3);
}

TEST_CASE("TextLines: the selection is copied as shown, in either direction and within the text") {
    TextLines lines;
    for (const char* text : {"RX first",
                             "TX s\xC3\xA9"
                             "cond \xF0\x9F\x94\xA7",
                             "third"})
        lines.Append({TextLines::Kind::Received, text});
    lines.Select({2, 2}, {0, 3});
    CHECK(lines.SelectedText() == "first\nTX s\xC3\xA9"
                                  "cond \xF0\x9F\x94\xA7\nth");
    CHECK(lines.SelectedIn(1).end == 11);
    lines.Select({0, 99}, {99, 99});
    CHECK(lines.SelectedText() == "\nTX s\xC3\xA9"
                                  "cond \xF0\x9F\x94\xA7\nthird");
}

}
