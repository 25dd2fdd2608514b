#include "messages/AppInterface.h"

#include "harness/TemporaryFolder.h"

#include <utility>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

TEST_CASE("AppInterface: a report ends with a rule only after details, and returns its answer") {
    const std::string rule = "\r\n----------------";
    const TemporaryFolder folder;
    AppInterface app({folder / "M"});
    CHECK(app.Report({2, u"i", u"%s", u"1\n2", -7}) == -7);
    std::string expected = rule + "\r\nMSG:FATAL: \"%s\" (-7)\r\n Info: \"i\"\r\nDetails:\r\n1\r\n2" + rule;
    CHECK(folder.ReadFile("M/Debug.Log") == expected);
    const std::pair<std::int32_t, std::string> levels[] = {{0, "WARN"}, {1, "NORM"}, {3, "QUERY"},
                                                           {4, "INFO"}, {5, "5"},    {-1, "-1"}};
    for (const auto& each : levels) {
        CHECK(app.Report({each.first, u"", u"m", u"", 7}) == 7);
        expected += rule + "\r\nMSG:" + each.second + ": \"m\" (7)\r\n Info: \"\"";
        CHECK(folder.ReadFile("M/Debug.Log") == expected);
    }
}

TEST_CASE("AppInterface: an unattended program answers a box by its buttons and its default, and leaves a note") {
    struct Case {
        unsigned style;
        int answer;
        std::string note;
    };
    const Case cases[] = {{okOnly | iconExclamation | defaultButton2, 1, "Ok"},
                          {okCancel, 1, "Ok"},
                          {okCancel | defaultButton2, 2, "Cancel"},
                          {yesNo | defaultButton3, 6, "Yes"},
                          {yesNo | defaultButton2, 7, "Nein"},
                          {yesNoCancel, 6, "Yes"},
                          {yesNoCancel | defaultButton2, 7, "Nein"},
                          {yesNoCancel | defaultButton3, 2, "Cancel"},
                          {abortRetryIgnore | defaultButton2, 1, "Ok"}};
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        CAPTURE(each.style);
        TextHolder dictionary;
        dictionary.Add(u"Nein", 65);
        std::string notes;
        AppInterface app(
            {folder / "M"}, [&](KelTextView note) { notes += ToUtf8(note); }, dictionary);
        CHECK(app.AnswerWithoutUser({u"text\n2", u"caption", each.style}) == each.answer);
        CHECK(notes == "\ncaption: text\n2 (" + each.note + ")");
    }
    CHECK_FALSE(std::filesystem::exists(folder / "M"));
}

TEST_CASE("AppInterface: a suppressed message is answered without a note, in this run and the next") {
    const TemporaryFolder folder;
    std::string notes;
    AppInterface app({{}, folder / "M"});
    AppInterface next({folder / "M"}, [&](KelTextView note) { notes += ToUtf8(note); });
    app.SuppressMessage(12);
    next.ReadSuppressedMessages();
    for (AppInterface* each : {&app, &next})
        CHECK(each->AnswerWithoutUser({u"text", u"", yesNo | defaultButton2, 12}) == 7);
    CHECK(notes.empty());
    // Any other box of an attended program has to be shown.
    CHECK(app.AnswerWithoutUser({u"other", u"", okOnly, 13}) == std::nullopt);
    CHECK(app.AnswerWithoutUser({u"other", u"", okOnly}) == std::nullopt);
}
