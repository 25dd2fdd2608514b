#include "DesktopFixture.h"

namespace tarvin::test {

TEST_CASE("MainWindow: a transfer is broken off only if the user says so") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    desktop.terminal->Write("ABST0100 \rABADG01 X1 \r");
    REQUIRE(Becomes([&] { return desktop.Panel().statusLine->Text().starts_with("Uploading"); }));
    const auto isOnItsWay = [&] { return IsTransferring(desktop.Engine().Snapshot().transferState); };

    // Enter keeps the transfer on.
    Click(desktop.Panel().test);
    wxTopLevelWindow* question = WindowTitled("A File Is on Its Way");
    REQUIRE(question != nullptr);
    CHECK(TextIn(question).find("100 is being received from the machine") != std::string::npos);
    PressKey(WXK_RETURN);
    REQUIRE(BecomesHidden("A File Is on Its Way"));
    CHECK(isOnItsWay());

    // Settings that say nothing new about the port leave it alone.
    Click(desktop.Panel().changeSettings);
    REQUIRE(WindowTitled("Download Settings") != nullptr);
    PressKey(WXK_RETURN);
    REQUIRE(BecomesHidden("Download Settings"));
    CHECK(isOnItsWay());

    Click(desktop.Panel().close);
    REQUIRE(WindowTitled("A File Is on Its Way") != nullptr);
    PressKey(WXK_ESCAPE);
    REQUIRE(BecomesHidden("A File Is on Its Way"));
    CHECK(isOnItsWay());

    Click(desktop.Panel().test);
    Click(ButtonIn(WindowTitled("A File Is on Its Way"), "Yes"));
    CHECK(Becomes([&] { return !isOnItsWay(); }));
    // The board keeps it until it is seen.
    CHECK(Becomes([&] { return desktop.Panel().monitor->TheBoard().Content().state == BoardState::Failed; }));
    desktop.terminal->Write("ABTS \r");
    CHECK(Becomes([&] { return desktop.Panel().statusLine->Text() == "Loop Back Test"; }));
    CHECK(OnUi([&] { return desktop.Panel().monitor->TheBoard().Content().state; }) == BoardState::Failed);
    Click(&desktop.Panel().monitor->TheBoard().SeenButton());
    CHECK(Becomes([&] { return !desktop.Panel().monitor->TheBoard().Content().unseen; }));
}

TEST_CASE("MainWindow: a signal does not ask whether a transfer may be broken off") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    desktop.terminal->Write("ABST0100 \rABADG01 X1 \r");
    REQUIRE(Becomes([&] { return desktop.Panel().statusLine->Text().starts_with("Uploading"); }));
    Click(desktop.Panel().test);
    // A question that is open does not hold the end up either.
    REQUIRE(WindowTitled("A File Is on Its Way") != nullptr);
    OnUi([&] { desktop.window->Close(true); });
    CHECK(desktop.Close());
}

}
