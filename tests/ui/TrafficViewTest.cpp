#include "DesktopFixture.h"

#include <algorithm>

namespace tarvin::test {

namespace {

// The view is open, and so many lines have come that the oldest ones are out of sight.
struct OpenView {
    explicit OpenView(int lineCount = 120) {
        desktop.Connect();
        desktop.Start();
        Click(desktop.Panel().viewSwitch);
        REQUIRE(Becomes([this] { return desktop.Engine().Traffic().IsWanted(); }));
        for (int number = 1; number <= lineCount; ++number)
            Bring("line " + std::to_string(number) + (number == 5 ? " needle" : number == 60 ? " NEEDLE" : ""));
    }
    void Bring(const std::string& text) {
        const std::size_t count = OnUi([this] { return Pane().Lines().Count(); });
        desktop.terminal->Write(text + "\r");
        REQUIRE(Becomes([&] { return Pane().Lines().Count() > count; }));
    }
    TrafficView& View() { return desktop.Panel().monitor->View(); }
    TextPane& Pane() { return View().Pane(); }
    std::uint64_t SelectedLine() {
        return OnUi([this] { return Pane().SelectionStart().line; });
    }
    std::string Result() {
        return OnUi([this] { return View().Bar()->Result().utf8_string(); });
    }

    DesktopFixture desktop;
};

}

TEST_CASE("TrafficView: Ctrl+F finds forward and back, around the ends, and Escape closes") {
    OpenView open;
    PressKey('F', wxMOD_CONTROL);
    REQUIRE(Becomes([&] { return open.View().IsFindOpen(); }));
    Type("needle");
    CHECK(Becomes([&] { return open.Pane().HasSelection() && !open.Pane().IsFollowing(); }));
    const std::uint64_t first = open.SelectedLine();
    PressKey(WXK_RETURN);
    CHECK(Becomes([&] { return open.Pane().SelectionStart().line != first; }));
    const std::uint64_t second = open.SelectedLine();
    CHECK((first > second ? first - second : second - first) == 55);
    PressKey(WXK_F3);
    CHECK(Becomes([&] { return open.Pane().SelectionStart().line == first; }));
    PressKey(WXK_F3, wxMOD_SHIFT);
    CHECK(Becomes([&] { return open.Pane().SelectionStart().line == second; }));
    // What was found is in sight.
    CHECK(OnUi([&] { return open.Pane().TopLine() <= second && second < open.Pane().TopLine() + 40; }));
    Type("x");
    CHECK(Becomes([&] { return open.View().Bar()->Result() == "Not found"; }));
    PressKey(WXK_ESCAPE);
    CHECK(Becomes([&] { return !open.View().IsFindOpen(); }));
}

TEST_CASE("TrafficView: the mark does not hide what was found in the last line") {
    OpenView open;
    open.Bring("the end");
    PressKey('F', wxMOD_CONTROL);
    REQUIRE(Becomes([&] { return open.View().IsFindOpen(); }));
    Type("the end");
    REQUIRE(Becomes([&] { return open.Pane().HasSelection() && open.Pane().SelectionStart().column > 0; }));
    // The second search wraps to the same place, and the words that say so take room too.
    for (const char* result : {"", "Goes on at the first line"}) {
        CAPTURE(result);
        CHECK(Becomes([&] {
            TextPane& pane = open.Pane();
            const int rows = pane.GetClientSize().GetHeight() / pane.GetCharHeight();
            const std::uint64_t line = pane.SelectionStart().line;
            wxWindow* mark = wxWindow::FindWindowByName("follow mark", &open.View());
            return open.View().Bar()->Result() == result && mark != nullptr && mark->IsShown() &&
                   line == pane.Lines().Last().line && line < pane.TopLine() + static_cast<std::uint64_t>(rows) &&
                   pane.TopLine() <= line && mark->GetRect().GetTop() >= pane.GetRect().GetBottom();
        }));
        PressKey(WXK_RETURN);
    }
}

TEST_CASE("TrafficView: the mark tells that following is off, and its button brings the end back") {
    OpenView open;
    CHECK(ButtonIn(open.desktop.window, "Follow the End") == nullptr);
    Click(&open.Pane());
    PressKey(WXK_PAGEUP);
    CHECK(Becomes([&] { return !open.Pane().IsFollowing(); }));
    const std::uint64_t top = OnUi([&] { return open.Pane().TopLine(); });
    open.Bring("later");
    CHECK(OnUi([&] { return open.Pane().TopLine(); }) == top);
    wxWindow* follow = ButtonIn(open.desktop.window, "Follow the End");
    REQUIRE(follow != nullptr);
    Click(follow);
    CHECK(Becomes([&] { return open.Pane().IsFollowing() && !follow->IsShownOnScreen(); }));
    open.Bring("last");
    CHECK(OnUi([&] { return open.Pane().TopLine(); }) > top);
}

TEST_CASE("TrafficView: Shift and the keys select to the ends of lines and pages") {
    OpenView open(10);
    Click(&open.Pane());
    const auto selected = [&] { return OnUi([&] { return open.Pane().Lines().SelectedText(); }); };
    PressKey(WXK_HOME, wxMOD_CONTROL | wxMOD_SHIFT);
    CHECK(Becomes([&] { return open.Pane().SelectionStart() == TextLines::Position{open.Pane().Lines().First(), 0}; }));
    PressKey(WXK_END, wxMOD_CONTROL | wxMOD_SHIFT);
    CHECK(Becomes([&] { return open.Pane().SelectionEnd() == open.Pane().Lines().Last(); }));
    CHECK(selected().ends_with("line 10[0d]"));
    PressKey(WXK_PAGEUP, wxMOD_SHIFT);
    CHECK(Becomes([&] { return open.Pane().SelectionStart().line == open.Pane().Lines().First(); }));
}

TEST_CASE("LineTrace: holds, outages and their end stand between the lines as notes") {
    OpenView open(1);
    const auto hasNote = [&](const char* text) {
        return Becomes([&] {
            const TextLines& lines = open.Pane().Lines();
            for (std::uint64_t number = lines.First(); number < lines.End(); ++number) {
                const std::u32string& found = lines.At(number).text;
                if (lines.At(number).kind == TextLines::Kind::Note &&
                    std::string(found.begin(), found.end()).find(text) != std::string::npos)
                    return true;
            }
            return false;
        });
    };
    open.desktop.terminal->Write("\x13");
    CHECK(hasNote("XOff Hold=1"));
    open.desktop.terminal->Write("\x11");
    CHECK(hasNote("XOff Hold=0"));
    open.desktop.Disconnect();
    CHECK(hasNote(": COM1 "));
    CHECK(hasNote("LASER - No Link"));
    open.desktop.Connect();
    CHECK(hasNote("LASER COM1:2400"));
}

}
