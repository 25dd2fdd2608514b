#include "DesktopFixture.h"
#include "ui/CustomMessage.h"

#include <algorithm>

namespace tarvin::test {

using namespace std::chrono_literals;

namespace {

CustomMessage* BoxTitled(const char* title) {
    return dynamic_cast<CustomMessage*>(WindowTitled(title));
}

}

TEST_CASE("MessageBoxes: a log that cannot be written is one box, however many uploads, and settings stay in reach") {
    TemporaryFolder missing;
    const std::string log = (missing.Path() / "gone" / "activity.txt").string();
    DesktopFixture desktop("[Port Settings]\ntransmit delay=0\nflow control=None\n[Files]\nfile extension=nc\n"
                           "[Log]\nwrite log=1\nlog file=" +
                           log + "\n");
    desktop.Connect();
    desktop.Start();
    for (int upload = 1; upload <= 8; ++upload) {
        desktop.terminal->Write("ABST" + std::to_string(upload) + " \rABADN1 \rABEF \r");
        const std::string path = (desktop.folder / "NC").string() + "/" + std::to_string(upload) + ".nc";
        REQUIRE(desktop.StatusBecomes("Upload Completed " + path + " - 4 bytes in file."));
    }
    CustomMessage* box = BoxTitled("Problem");
    REQUIRE(box != nullptr);
    CHECK(TextIn(box).find("A log cannot be written. Transfers go on.") != std::string::npos);
    CHECK(ButtonIn(box, "Ok") != nullptr);
    CHECK(OnUi([] {
              return std::count_if(wxTopLevelWindows.begin(), wxTopLevelWindows.end(),
                                   [](wxWindow* window) { return dynamic_cast<CustomMessage*>(window) != nullptr; });
          }) == 1);
    Click(desktop.Panel().changeSettings);
    wxTopLevelWindow* settings = WindowTitled("Download Settings");
    REQUIRE(settings != nullptr);
    Click(ButtonIn(settings, "Cancel"));
    CHECK(BecomesHidden("Download Settings"));
    Click(ButtonIn(box, "Ok"));
    CHECK(BecomesHidden("Problem"));
}

TEST_CASE("CustomMessage: an endless text neither blocks the window nor leaves the screen, and is copied whole") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const std::u16string texts[] = {
        std::u16string(3'000'000, u'x'),
        u"/" + std::u16string(400, u'd') + u"/4711.nc",
        [] {
            std::u16string text;
            for (int line = 0; line < 100'000; ++line)
                text += u"a line of words\n";
            return text;
        }(),
    };
    for (const std::u16string& text : texts) {
        CAPTURE(text.size());
        const auto started = std::chrono::steady_clock::now();
        OnUi([&] {
            desktop.window->CallAfter([&window = *desktop.window, text] {
                window.ShowBox({text, u"Endless", okOnly | iconExclamation});
            });
        });
        CustomMessage* box = BoxTitled("Endless");
        REQUIRE(box != nullptr);
        REQUIRE(Becomes([&] { return box->IsActive(); }));
        CHECK(std::chrono::steady_clock::now() - started < 5s);
        CHECK(OnUi([&] { return wxRect(0, 0, 1600, 1200).Contains(box->GetRect()); }));
        CHECK(OnUi([&] { return box->WholeText().find(text) != KelText::npos; }));
        Click(ButtonIn(box, "Ok"));
        CHECK(BecomesHidden("Endless"));
    }
}

TEST_CASE("MainWindow: the log switch goes off when the log fails while a dialog is open") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    Click(desktop.Panel().changeSettings);
    REQUIRE(WindowTitled("Download Settings") != nullptr);
    OnUi([&] { desktop.Panel().logSwitch->SetValue(true); });
    desktop.Engine().StartCommsLog(desktop.folder / "missing" / "line.log");
    CHECK(Becomes([&] { return !desktop.Panel().logSwitch->GetValue(); }));
}

}
