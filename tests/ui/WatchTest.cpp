// The window of a machine that a service serves.
#include "DesktopFixture.h"
#include "harness/Transcript.h"
#include "harness/WaitUntil.h"

#include <csignal>
#include <memory>

#include <doctest/doctest.h>

namespace tarvin::test {

namespace {

class WatchFixture : public DesktopFixture {
public:
    WatchFixture() {
        Connect();
        StartService();
        Start(Desktop::Role::Watch);
    }

    void StartService() {
        service = std::make_unique<ChildProcess>(
            "tarvindl-service", ChildProcess::Options{{"LASER"}, {{"TARVINDL_HOME", folder.Path().string()}}});
        REQUIRE(service->WaitForOutput("Waiting..."));
    }

    std::string Ask(std::string_view question) {
        terminal->Write(Message(question));
        return terminal->Read(6);
    }

    bool RemarkBecomes(const std::string& text) {
        return Becomes([&] {
            const std::string label = window->RemarkText().GetLabelText().utf8_string();
            return window->RemarkText().IsShown() && label.find(text) != std::string::npos;
        });
    }

    std::unique_ptr<ChildProcess> service;
};

}

TEST_CASE("MainWindow: it shows what a service publishes, cannot act, and tells its end and its return") {
    WatchFixture fixture;
    const std::string process = std::to_string(fixture.service->Id());
    REQUIRE(fixture.RemarkBecomes("process " + process));
    REQUIRE(fixture.StatusBecomes("Waiting..."));
    CHECK(fixture.CaptionBecomes("LASER COM1:2400,N,8,1,None"));
    OnUi([&] {
        MainPanel& panel = fixture.Panel();
        for (wxWindow* control : {static_cast<wxWindow*>(panel.changeSettings), static_cast<wxWindow*>(panel.sendFile),
                                  static_cast<wxWindow*>(panel.receiveFile), static_cast<wxWindow*>(panel.test),
                                  static_cast<wxWindow*>(panel.logSwitch), static_cast<wxWindow*>(panel.viewSwitch),
                                  static_cast<wxWindow*>(panel.ctsSwitch), static_cast<wxWindow*>(panel.dsrSwitch),
                                  static_cast<wxWindow*>(&panel.monitor->TheBoard().SeenButton())})
            CHECK_FALSE(control->IsEnabled());
        CHECK(panel.close->IsEnabled());
        CHECK(panel.more->IsEnabled());
    });
    CHECK(fixture.Ask("ABST4711") == Message("AAAK"));
    CHECK(fixture.Ask("ABADG1 X5") == Message("AAAK"));
    const auto boardShows = [&](const KelText& number) {
        return Becomes([&] { return fixture.Panel().monitor->TheBoard().Content().number == number; });
    };
    CHECK(boardShows(u"4711"));
    CHECK(Becomes([&] { return fixture.Panel().monitor->TheBoard().Content().state == BoardState::Running; }));

    fixture.service->Signal(SIGKILL);
    CHECK(fixture.service->WaitForExit() == -SIGKILL);
    CHECK(fixture.RemarkBecomes("process " + process + ", has died."));
    CHECK(fixture.StatusBecomes("No program serves the machine"));
    CHECK(Becomes([&] { return fixture.Panel().statusLine->ShownOutlook() == Outlook::Bad; }));

    fixture.StartService();
    CHECK(fixture.RemarkBecomes("process " + std::to_string(fixture.service->Id()) + ". This window"));
    CHECK(fixture.StatusBecomes("Waiting..."));
    fixture.service->Signal(SIGTERM);
    CHECK(fixture.service->WaitForExit() == 0);
    CHECK(fixture.RemarkBecomes(", has ended."));
    CHECK(fixture.Close());
}

}
