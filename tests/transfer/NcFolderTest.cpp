#include "transfer/NcFolder.h"

#include "harness/TemporaryFolder.h"
#include "transfer/ProgramComment.h"

#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

TEST_CASE("FirstComment: finds what a program says of itself, and nothing else") {
    CHECK(FirstComment("%\nO4711 (BRACKET LEFT HAND)\n(SECOND)\n") == u"(BRACKET LEFT HAND)");
    CHECK(FirstComment("N10 ; cover plate \r\n") == u"cover plate");
    CHECK(FirstComment("()\n(PART)\n") == u"(PART)");
    CHECK(FirstComment("(OPEN\n").size() == 5);
    CHECK(FirstComment("N10 G00\n").empty());
    CHECK(FirstComment("").empty());
    // ISO 8859-1, UTF-8 and control characters.
    CHECK(FirstComment("(H\xD6HE)") == u"(H\u00D6HE)");
    CHECK(FirstComment("(H\xC3\x96HE)") == u"(H\u00D6HE)");
    CHECK(FirstComment("(A\x1B[31mB)") == u"(A[31mB)");
    CHECK(FirstComment("(" + std::string(500, 'x') + ")").size() == 80);
    std::string late;
    for (int line = 0; line < 100; ++line)
        late += "N1\n";
    CHECK(FirstComment(late + "(LATE)").empty());
}

TEST_CASE("NcFolder: lists what the machine may ask for, in the order of numbers") {
    TemporaryFolder folder;
    folder.WriteFile("10.nc", "(TEN)\nN1\n");
    folder.WriteFile("9.NC", "N1\n");
    folder.WriteFile("7.nc.part", "(SEVEN)\n");
    folder.WriteFile("10.nc.part", "(NEW)\n");
    folder.WriteFile("readme.txt", "");
    folder.WriteFile(".nc", "");
    std::filesystem::create_directory(folder / "8.nc");
    const std::atomic<bool> stop = false;
    const auto entries = ListNcFolder(FromPath(folder.Path()), u"nc", stop);
    REQUIRE(entries);
    REQUIRE(entries->size() == 3);
    CHECK((*entries)[0].number == u"7");
    CHECK((*entries)[0].isIncomplete);
    CHECK((*entries)[0].comment == u"(SEVEN)");
    CHECK((*entries)[1].number == u"9");
    CHECK((*entries)[2].number == u"10");
    CHECK(!(*entries)[2].isIncomplete);
    CHECK((*entries)[2].comment == u"(TEN)");
    CHECK((*entries)[2].size == 9);
    CHECK(!ListNcFolder(FromPath(folder / "missing"), u"nc", stop));
    CHECK(ComesBefore(u"A2", u"A10"));
    CHECK(ComesBefore(u"007", u"8"));
    CHECK(ComesBefore(u"7", u"7A"));
    CHECK(!ComesBefore(u"7", u"7"));
}
