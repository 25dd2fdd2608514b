#include "files/NativeFile.h"
#include "transfer/TransferState.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin;

namespace {

// The text of the table row that begins with the number, its cells parted by '|'.
std::string RowOf(const std::string& page, int number) {
    const std::size_t start = page.find("<tr><td>" + std::to_string(number) + "</td>");
    if (start == std::string::npos)
        return "";
    std::string row;
    bool isMark = false;
    for (const char unit : page.substr(start, page.find("</tr>", start) - start)) {
        if (unit == '<')
            row += '|';
        isMark = unit == '<' || (isMark && unit != '>');
        if (!isMark && unit != '>')
            row += unit == '\n' ? ' ' : unit;
    }
    row.erase(std::unique(row.begin(), row.end(), [](char a, char b) { return a == '|' && b == '|'; }), row.end());
    return row;
}

}

TEST_CASE("TransferState: the help book explains every status text and tells which ones are logged") {
    const std::string page =
        ReadWholeFile(std::filesystem::path(TARVIN_HELP_FOLDER) / "status-texts.htm", 1 << 20).ValueOr("");
    constexpr int highestCode = 38;
    for (int code = 0; code <= highestCode; ++code) {
        CAPTURE(code);
        const std::string row = RowOf(page, code);
        REQUIRE(row != "");
        for (const bool serverMode : {true, false}) {
            const StatusDescription description =
                DescribeState(TransferState{code}, {u"FILE", 1200, 3400, u"STATION", u"PEER", serverMode});
            // The client's text stands in the explanation.
            const bool isClients = code == static_cast<int>(TransferState::FileListRequest) && !serverMode;
            const bool isWhole = description.line && !isClients;
            const std::string text = ToUtf8(description.line.value_or(u"(no text of its own"));
            CHECK_MESSAGE(row.find(isWhole ? "|" + text + "|" : text) != std::string::npos, row, " lacks ", text);
            CHECK_MESSAGE(row.find(ToUtf8(description.reportedBefore.value_or(u""))) != std::string::npos, row);
            CHECK_MESSAGE((row.find("|yes|") != std::string::npos) == description.isReported, row);
        }
    }
    CHECK(RowOf(page, highestCode + 1) == "");
}
