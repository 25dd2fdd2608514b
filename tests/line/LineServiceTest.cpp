#include "line/LineService.h"

#include "harness/FakePort.h"

#include <string>
#include <vector>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

// A line whose client notes what it gets, takes nothing, and answers each arrival with `answer`.
struct Station : LineClient {
    explicit Station(const char16_t* flowControl) {
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
            line.Transmit().SendText(answer);
    }
    void OnLineFree() override { ++freeCount; }
    void OnOverrun() override {}
    void OnOverrunEnded() override {}
    void OnLinkLost() override {}
    void OnPortProblem(const PortProblem&) override {}

    void LookUntilQuiet() {
        while (line.Look()) {
        }
    }

    ManualClock clock;
    FakeLine far{clock};
    DownloadSettings settings;
    TrafficQueue traffic;
    LineTrace trace{traffic};
    LastLogged lastLogged;
    CommsLog log{clock, lastLogged};
    LineRecorder recorder{trace, log};
    ThreadOwner thread;
    LineService line{std::make_unique<FakePort>(far), clock, recorder, *this, thread};
    std::string answer;
    std::vector<std::string> arrivals;
    int freeCount = 0;
};

}

TEST_CASE("LineService: one arrival is told once, however often the line is looked at") {
    Station station(u"None");
    station.answer = "!";
    station.far.Arrive("ab");
    station.LookUntilQuiet();
    station.LookUntilQuiet();
    CHECK(station.arrivals == std::vector<std::string>{"ab"});
    CHECK(station.far.TakeSent() == "!");
    station.far.Arrive("c");
    station.LookUntilQuiet();
    CHECK(station.arrivals == std::vector<std::string>{"ab", "abc"});
}

TEST_CASE("LineService: an XOFF that arrives after the status was taken holds the write that follows it") {
    for (const char16_t* flow : {u"None", u"Hardware"}) {
        Station station(flow);
        station.line.Transmit().SendText("answer");
        station.far.arrivesAfterStatus = "\x13";
        station.LookUntilQuiet();
        CHECK(station.far.TakeSent().empty());
        CHECK(station.line.Holds().xoff);
        CHECK(station.freeCount == 0);
        station.far.Arrive("\x11");
        station.LookUntilQuiet();
        CHECK_FALSE(station.line.Holds().xoff);
        CHECK(station.freeCount > 0);
        // A waiting answer goes out with the next one.
        station.line.Transmit().SendText(" and more");
        station.LookUntilQuiet();
        CHECK(station.far.TakeSent() == "answer and more");
    }
}

TEST_CASE("LineService: bytes that arrive while an answer is about to be written are told, and answered with it") {
    Station station(u"None");
    station.answer = "+";
    station.line.Transmit().SendText("first");
    station.far.arrivesAfterStatus = "b";
    station.LookUntilQuiet();
    CHECK(station.arrivals == std::vector<std::string>{"b"});
    CHECK(station.far.TakeSent() == "first+");
}
