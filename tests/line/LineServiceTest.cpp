#include "line/LineService.h"

#include "harness/FakePort.h"

#include <string>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

// A line whose client notes what it gets, takes nothing, and answers each arrival with `answer`.
struct TestedLine : LineClient {
    explicit TestedLine(const char16_t* flowControl) {
        settings.port = u"COM1";
        settings.baudRate = u"2400";
        settings.parity = u"None";
        settings.dataBits = u"8";
        settings.stopBits = u"1";
        settings.flowControl = flowControl;
        line.OpenPort(settings, u"LASER");
    }

    void OnReceived(ReceiveBuffer& received) override {
        arrivals.emplace_back(received.Bytes().begin(), received.Bytes().end());
        if (!answer.empty())
            line.SendText(answer);
    }
    void OnLineFree() override { ++freeCount; }
    void OnOverrun() override {}
    void OnOverrunEnded() override {}
    void OnLinkLost() override {}
    void OnPortProblem(const PortProblem&) override {}
    void OnPortAdvice(const KelText&) override {}

    void LookUntilQuiet() {
        while (line.Look()) {
        }
    }

    ManualClock clock;
    FakeLine far{clock};
    DownloadSettings settings;
    TrafficQueue traffic;
    LineTrace trace{traffic, clock};
    LogLines log{clock};
    LineRecorder recorder{trace, log};
    ThreadOwner thread;
    LineService line{std::make_unique<FakePort>(far), clock, recorder, *this, thread};
    std::string answer;
    std::vector<std::string> arrivals;
    int freeCount = 0;
};

}

TEST_CASE("LineService: one arrival is told once, however often the line is looked at") {
    TestedLine tested(u"None");
    tested.answer = "!";
    tested.far.Arrive("ab");
    tested.LookUntilQuiet();
    tested.LookUntilQuiet();
    CHECK(tested.arrivals == std::vector<std::string>{"ab"});
    CHECK(tested.far.TakeSent() == "!");
    tested.far.Arrive("c");
    tested.LookUntilQuiet();
    CHECK(tested.arrivals == std::vector<std::string>{"ab", "abc"});
}

TEST_CASE("LineService: an XOFF that arrives after the status was taken holds the write that follows it") {
    for (const char16_t* flow : {u"None", u"Hardware"}) {
        TestedLine tested(flow);
        tested.line.SendText("answer");
        tested.far.arrivesAfterStatus = "\x13";
        tested.LookUntilQuiet();
        CHECK(tested.far.TakeSent().empty());
        CHECK(tested.line.Holds().xoff);
        CHECK(tested.freeCount == 0);
        tested.far.Arrive("\x11");
        tested.LookUntilQuiet();
        CHECK_FALSE(tested.line.Holds().xoff);
        CHECK(tested.freeCount > 0);
        CHECK(tested.far.TakeSent() == "answer");
    }
}

TEST_CASE("LineService: bytes that arrive while an answer is about to be written are told, and answered with it") {
    TestedLine tested(u"None");
    tested.answer = "+";
    tested.line.SendText("first");
    tested.far.arrivesAfterStatus = "b";
    tested.LookUntilQuiet();
    CHECK(tested.arrivals == std::vector<std::string>{"b"});
    CHECK(tested.far.TakeSent() == "first+");
}

TEST_CASE("LineService: an XOFF does not outlive the opening of the port, and nothing is queued without a link") {
    TestedLine tested(u"None");
    tested.far.Arrive("\x13");
    tested.LookUntilQuiet();
    tested.line.SendText("stale");
    tested.line.OpenPort(tested.settings, u"LASER");
    CHECK_FALSE(tested.line.Holds().xoff);
    tested.LookUntilQuiet();
    CHECK(tested.far.TakeSent().empty());
    tested.line.ClosePort();
    tested.line.SendText("unheard");
    CHECK(tested.line.IsEmpty());
}

TEST_CASE("LineService: a frame that has begun is finished, the frames behind it are dropped") {
    TestedLine tested(u"None");
    tested.far.outputRoom = 4;
    tested.line.SendText("begun frame");
    tested.LookUntilQuiet();
    tested.line.SendText("dropped");
    tested.far.Arrive("\x13");
    tested.LookUntilQuiet();
    tested.line.DropUnsent();
    tested.line.SendText("!");
    tested.far.outputRoom = 1000;
    tested.far.Arrive("\x11");
    tested.LookUntilQuiet();
    CHECK(tested.far.TakeSent() == "begun frame!");
}

TEST_CASE("LineService: the bytes that a driver drops with an old XOFF go out all the same") {
    TestedLine tested(u"Xon/Xoff");
    tested.far.bytesPerSecond = 10;
    tested.line.SendText("0123456789");
    tested.LookUntilQuiet();
    tested.clock.Advance(std::chrono::milliseconds(300));
    tested.far.Arrive("\x13");
    tested.LookUntilQuiet();
    CHECK(tested.line.IsHeldUp());
    tested.clock.Advance(std::chrono::seconds(11));
    tested.LookUntilQuiet();
    tested.line.EndOldHold();
    tested.far.bytesPerSecond = 0;
    tested.LookUntilQuiet();
    CHECK(tested.far.TakeSent() == "0123456789");
}
