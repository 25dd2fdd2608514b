#include "messages/AppInterface.h"

#include "harness/TemporaryFolder.h"

#include <utility>

#include <doctest/doctest.h>

using namespace tarvin;
using tarvin::test::TemporaryFolder;

namespace {

class RecordingApp : public AppInterface {
public:
    using AppInterface::AppInterface;
    std::string log;

protected:
    int Show(const MessageBoxText& box) override {
        log += "shown: " + ToUtf8(box.text);
        return 42;
    }
    void AppendToMessageLog(KelTextView text) override { log += ToUtf8(text); }
};

}

TEST_CASE("a report is framed in the debug log by its details alone, and returns its answer") {
    const std::string rule = "\r\n----------------";
    const TemporaryFolder folder;
    RecordingApp app({folder / "M"}, Attendance::Attended);
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

TEST_CASE("a box that nobody sees answers itself by its buttons and its default, and leaves a note") {
    struct Case {
        unsigned style;
        int answer;
        std::string note;
    };
    // The last one stands for abort, retry and ignore.
    const Case cases[] = {{okOnly | iconExclamation | defaultButton2, 1, "Ok"},
                          {okCancel, 1, "Ok"},
                          {okCancel | defaultButton2, 2, "Cancel"},
                          {yesNo | defaultButton3, 6, "Yes"},
                          {yesNo | defaultButton2, 7, "Nein"},
                          {yesNoCancel, 6, "Yes"},
                          {yesNoCancel | defaultButton2, 7, "Nein"},
                          {yesNoCancel | defaultButton3, 2, "Cancel"},
                          {2 | defaultButton2, 1, "Ok"}};
    const TemporaryFolder folder;
    for (const Case& each : cases) {
        CAPTURE(each.style);
        TextHolder dictionary;
        dictionary.Add(u"Nein", 65);
        RecordingApp app({folder / "M"}, Attendance::Unattended, dictionary);
        CHECK(app.MessageBox({u"text\n2", u"caption", each.style}) == each.answer);
        CHECK(app.log == "\ncaption: text\n2 (" + each.note + ")");
    }
    CHECK_FALSE(std::filesystem::exists(folder / "M"));
}

TEST_CASE("a suppressed message is answered without a trace, in this run and the next, and any other is shown") {
    const TemporaryFolder folder;
    RecordingApp app({{}, folder / "M"}, Attendance::Attended);
    RecordingApp next({folder / "M"}, Attendance::Unattended);
    app.SuppressMessage(12);
    next.ReadSuppressedMessages();
    for (RecordingApp* each : {&app, &next}) {
        CHECK(each->MessageBox({u"text", u"", yesNo | defaultButton2, 12}) == 7);
        CHECK(each->log.empty());
    }
    CHECK(app.MessageBox({u"other", u"", okOnly, 13}) == 42);
    CHECK(app.log == "shown: other");
}
