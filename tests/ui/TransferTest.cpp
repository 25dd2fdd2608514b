#include "DesktopFixture.h"

#include <algorithm>
#include <thread>

namespace tarvin::test {

namespace {

std::string NcFile(int lineCount) {
    std::string text;
    for (int number = 1; number <= lineCount; ++number)
        text += "N" + std::to_string(number) + " G01 X" + std::to_string(number * 7 % 1000) + " Y0\r\n";
    return text;
}

std::string LineOf(MainPanel& panel, std::uint64_t number) {
    const auto& text = panel.monitor->Traffic().Lines().At(number).text;
    return std::string(text.begin(), text.end());
}

}

TEST_CASE("MainWindow: a download and an upload are shown from their beginning to their end") {
    DesktopFixture desktop;
    const std::string program = NcFile(20);
    desktop.folder.WriteFile("NC/200.nc", program);
    desktop.folder.WriteFile("sent.nc", program);
    auto& controller =
        desktop.RunController({"--delay", "100", "test", "get", "200", (desktop.folder / "got.nc").string(), "put",
                               "100", (desktop.folder / "sent.nc").string()});
    REQUIRE(Becomes([&] { return std::filesystem::exists(desktop.folder / "line"); }));
    desktop.Start();
    Click(desktop.Panel().viewSwitch);

    const std::string path = (desktop.folder / "NC").string();
    bool wasBarPartlyFull = false;
    bool wereBothLampsLit = false;
    std::string completed;
    std::string caption;
    Outlook outlook = Outlook::Idle;
    CHECK(Becomes([&] {
        const double filled = desktop.Panel().progressBar->FilledPart();
        wasBarPartlyFull = wasBarPartlyFull || (filled > 0.1 && filled < 0.9);
        wereBothLampsLit =
            wereBothLampsLit || (desktop.Panel().received->IsLit() && desktop.Panel().transmitted->IsLit());
        completed = desktop.Panel().statusLine->Text().utf8_string();
        caption = desktop.window->GetTitle().utf8_string();
        outlook = desktop.Panel().statusLine->ShownOutlook();
        return completed.starts_with("Download Completed");
    }));
    CHECK(wasBarPartlyFull);
    CHECK(wereBothLampsLit);
    CHECK(completed == "Download Completed " + path + "/200.nc - " + std::to_string(program.size()) + " bytes");
    CHECK(caption == "LASER  200");
    CHECK(outlook == Outlook::Good);

    CHECK(Becomes([&] { return desktop.Panel().statusLine->Text().starts_with("Uploading " + path + "/100.nc - "); }));
    CHECK(desktop.StatusBecomes("Upload Completed " + path + "/100.nc - " + std::to_string(program.size()) +
                                " bytes in file."));
    CHECK(controller.WaitForExit() == 0);
    CHECK(desktop.folder.ReadFile("got.nc") == program);
    CHECK(desktop.folder.ReadFile("NC/100.nc") == program);

    // Messages of the controller and answers of the program are lines of their own kind.
    CHECK(Becomes([&] {
        const TextLines& lines = desktop.Panel().monitor->Traffic().Lines();
        bool isAsked = false;
        bool isAnswered = false;
        for (std::uint64_t number = lines.First(); number < lines.End(); ++number) {
            const std::string text = LineOf(desktop.Panel(), number);
            const auto kind = lines.At(number).kind;
            isAsked = isAsked || (text.starts_with("RX ") && text.find("ABEF") != std::string::npos &&
                                  kind == TextLines::Kind::Received);
            isAnswered = isAnswered || (text.starts_with("TX ") && text.find("AAAK") != std::string::npos &&
                                        kind == TextLines::Kind::Transmitted);
        }
        return isAsked && isAnswered;
    }));
}

TEST_CASE("MonitorArea: the view starts empty each time, and no lines are made while it is off") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const auto isWanted = [&] { return desktop.Engine().Traffic().IsWanted(); };
    const auto lineCount = [&] { return desktop.Panel().monitor->Traffic().Lines().Count(); };
    CHECK_FALSE(isWanted());
    desktop.terminal->Write("before\r");
    Click(desktop.Panel().viewSwitch);
    REQUIRE(Becomes(isWanted));
    desktop.terminal->Write("during\r");
    CHECK(Becomes([&] { return lineCount() > 0; }));
    CHECK(OnUi([&] { return LineOf(desktop.Panel(), desktop.Panel().monitor->Traffic().Lines().First()); }) ==
          "RX during[0d]");
    // An answer is shown when it goes out, without waiting for the next message.
    desktop.terminal->Write("ABTS \r");
    CHECK(Becomes([&] {
        const TextLines& lines = desktop.Panel().monitor->Traffic().Lines();
        return LineOf(desktop.Panel(), lines.End() - 1) == "TX AATSV[0d]";
    }));

    Click(desktop.Panel().viewSwitch);
    CHECK(Becomes([&] { return !isWanted() && desktop.Panel().monitor->PicturePane().IsShown(); }));
    desktop.terminal->Write("hidden\r");
    Click(desktop.Panel().viewSwitch);
    REQUIRE(Becomes(isWanted));
    desktop.terminal->Write("again\r");
    CHECK(Becomes([&] { return lineCount() > 0; }));
    CHECK(OnUi([&] { return LineOf(desktop.Panel(), desktop.Panel().monitor->Traffic().Lines().First()); }) ==
          "RX again[0d]");
}

TEST_CASE("Lamp: an XOFF lights its lamp until the XON") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    desktop.terminal->Write("\x13");
    CHECK(Becomes([&] { return desktop.Panel().xoffHold->IsLit(); }));
    desktop.terminal->Write("\x11");
    CHECK(Becomes([&] { return !desktop.Panel().xoffHold->IsLit(); }));
}

TEST_CASE("MainWindow: the loop-back test fails without a plug and succeeds with one") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    Click(desktop.Panel().test);
    CHECK(desktop.StatusBecomes("Local Loopback Test Failure"));
    const std::string sent = desktop.terminal->Read(17);
    CHECK(sent == "LocalTestMessage@");
    Click(desktop.Panel().test);
    desktop.terminal->Write(desktop.terminal->Read(17));
    CHECK(desktop.StatusBecomes("Local Loopback Test Success"));
}

TEST_CASE("MainWindow: a vanished port is told once, and its return closes the box") {
    DesktopFixture desktop;
    desktop.Connect();
    desktop.Start();
    const std::string linked = "LASER COM1:2400,N,8,1,None";
    REQUIRE(desktop.CaptionBecomes(linked));
    desktop.Disconnect();
    wxTopLevelWindow* box = desktop.OutageBox();
    REQUIRE(box != nullptr);
    const std::string title = OnUi([&] { return box->GetTitle().utf8_string(); });
    CHECK(TextIn(box).find("COM1\n") != std::string::npos);
    CHECK(desktop.CaptionBecomes("LASER - No Link"));
    CHECK(OnUi([&] { return desktop.Panel().statusLine->ShownOutlook(); }) == Outlook::Bad);
    CHECK(OnUi([&] { return desktop.Panel().monitor->PictureName(); }) == "connection-broken.svg");

    desktop.Connect();
    CHECK(desktop.CaptionBecomes(linked));
    CHECK(OnUi([&] { return desktop.Panel().monitor->PictureName(); }) == "connection.svg");
    CHECK(BecomesHidden(title));
}

}
