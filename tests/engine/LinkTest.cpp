#include "harness/EngineHarness.h"
#include "harness/Transcript.h"
#include "protocol/RawProtocol.h"
#include "protocol/TarvinApp.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

using Strings = std::vector<std::string>;

// Takes nothing, as a protocol does that waits for the end of a message.
class WaitingProtocol : public Protocol {
public:
    explicit WaitingProtocol(const ProtocolParts&) {}
    void OnReceived(ReceiveBuffer& received) override {
        buffer = &received;
        ++arrivals;
    }

    ReceiveBuffer* buffer = nullptr;
    int arrivals = 0;
};

Strings TrafficOf(Monitor& engine) {
    Strings texts;
    for (const TrafficLine& line : engine.Traffic().Take())
        texts.push_back(line.text);
    return texts;
}

}

TEST_CASE("PortLink: the port opens step by step, and each failed step is reported") {
    const Strings wholeWay = {"Open COM1",
                              "SetQueueSizes 4000 1000",
                              "FetchState",
                              "ApplyMode baud=2400 parity=N data=8 stop=1",
                              "CommitState software ",
                              "SetTimeouts 10000",
                              "Purge"};
    const auto upTo = [&](std::size_t count) {
        Strings calls(wholeWay.begin(), wholeWay.begin() + static_cast<std::ptrdiff_t>(count));
        calls.push_back("Purge");
        return calls;
    };
    // A mode that the device refuses: nothing may cross the line in another one.
    Strings refused = upTo(5);
    refused.insert(refused.end(), {"Purge", "Close"});
    struct Case {
        const char* failing;
        const char* stepName;
        Strings calls;
        bool isLinked;
    };
    const Case cases[] = {
        {"", "", wholeWay, true},
        {"Open", "Open Comm", {"Open COM1"}, false},
        {"SetQueueSizes", "Set Comm Buffer Sizes", wholeWay, true},
        {"FetchState", "Get Comm State", wholeWay, true},
        {"ApplyMode", "Update Comm State", upTo(4), false},
        {"CommitState", "Set Comm State", refused, false},
        {"SetTimeouts", "Setup_Timeouts", upTo(6), false},
    };
    for (const Case& each : cases) {
        CAPTURE(each.failing);
        EngineHarness<RawProtocol> harness;
        harness.line.failures[each.failing] = {u"no luck", false};
        harness.Open();
        CHECK(harness.line.calls == each.calls);
        CHECK(ToUtf8(harness.Snapshot().caption) ==
              (each.isLinked ? "LASER COM1:2400,N,8,1,Xon/Xoff" : "LASER - No Link"));
        // A port that works all the same is told at once, the others once the failure has lasted.
        if (!each.isLinked)
            CHECK(harness.events.boxes.empty());
        harness.Run(10s);
        CHECK(harness.events.boxes ==
              (*each.failing == '\0' ? Strings() : Strings{each.stepName + std::string(": COM1\nno luck")}));
        // The same settings leave a configured port alone. They are another attempt for all others, which closes a port
        // that is half-configured.
        harness.line.failures.clear();
        harness.line.calls.clear();
        harness.engine->ApplySettings(harness.engine->Settings());
        CHECK(harness.line.calls.empty() == each.isLinked);
        const bool isHalfConfigured =
            std::string(each.failing) == "ApplyMode" || std::string(each.failing) == "SetTimeouts";
        CHECK(std::count(harness.line.calls.begin(), harness.line.calls.end(), "Close") == (isHalfConfigured ? 1 : 0));
        CHECK(harness.Snapshot().caption == u"LASER COM1:2400,N,8,1,Xon/Xoff");
    }
}

TEST_CASE("Monitor: what the user should know of a port that works is told beside the status, without a box") {
    EngineHarness<RawProtocol> harness;
    harness.line.advice = u"Answers may be late";
    harness.Open();
    CHECK(harness.Snapshot().caption == u"LASER COM1:2400,N,8,1,Xon/Xoff");
    CHECK(harness.Snapshot().announcement == u"Answers may be late");
    CHECK(harness.events.boxes.empty());
}

TEST_CASE("PortLink: each flow control sets its handshake, and an unknown one leaves it as found") {
    struct Case {
        const char* flow;
        int cts;
        int dsr;
        const char* committed;
    };
    const Case cases[] = {
        {"None", 1, 1, "CommitState"},
        {"Xon/Xoff", 1, 1, "CommitState software "},
        {"Hardware", 1, 1, "CommitState cts dsr sensitive rts dtr "},
        {"Hardware", 0, 0, "CommitState sensitive "},
        {"Combined", 1, 0, "CommitState software cts sensitive rts "},
        {"", 1, 1, "CommitState as found"},
        {"xon/xoff", 1, 1, "CommitState as found"},
    };
    for (const Case& each : cases) {
        CAPTURE(each.flow);
        EngineHarness<RawProtocol> harness;
        harness.Open();
        harness.line.calls.clear();
        auto settings = harness.engine->Settings();
        settings.baudRate = u"9600";
        settings.flowControl = FromUtf8(each.flow);
        settings.ctsFlow = each.cts;
        settings.dsrFlow = each.dsr;
        harness.engine->ApplySettings(settings);
        CHECK(std::count(harness.line.calls.begin(), harness.line.calls.end(), each.committed) == 1);
    }
}

TEST_CASE("Monitor: one outage is one report, and the port comes back by itself") {
    struct Case {
        const char* operation;
        const char* stepName;
    };
    for (const Case& each : {Case{"GetStatus", "Comms Status Check"}, {"Read", "Read Data"}, {"Write", "Write Data"}}) {
        CAPTURE(each.operation);
        EngineHarness<RawProtocol> harness;
        harness.Open();
        harness.line.failures[each.operation] = {u"Input/output error", true};
        harness.line.failures["Open"] = {u"No such device", false};
        harness.line.Arrive("x");
        harness.SendText("answer");
        harness.Run(1min);
        CHECK(harness.events.boxes == Strings{each.stepName + std::string(": COM1\nInput/output error")});
        CHECK(harness.Snapshot().caption == u"LASER - No Link");
        CHECK(std::count(harness.line.calls.begin(), harness.line.calls.end(), "Open COM1") >= 59);
        harness.line.failures.clear();
        // The answer belongs to a question that was asked before the outage.
        CHECK(harness.Run(1100ms).empty());
        CHECK(harness.Snapshot().caption == u"LASER COM1:2400,N,8,1,Xon/Xoff");
        CHECK(harness.events.boxes.size() == 1);
        harness.SendText("next");
        CHECK(harness.Run(1100ms) == "next");
        harness.line.isPresent = false;
        harness.Run(5s);
        CHECK(harness.events.boxes.size() == 2);
    }
}

TEST_CASE("Monitor: an outage of less than three seconds is told by the caption alone") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    for (int outage = 0; outage < 5; ++outage) {
        harness.line.isPresent = false;
        harness.Run(1500ms);
        CHECK(harness.Snapshot().caption == u"LASER - No Link");
        harness.line.isPresent = true;
        harness.Run(3s);
        CHECK(harness.Snapshot().caption == u"LASER COM1:2400,N,8,1,Xon/Xoff");
    }
    CHECK(harness.events.boxes.empty());
}

TEST_CASE("Monitor: within one outage a device that is away, and one that refuses its mode, are told once each") {
    for (const char* operation : {"GetStatus", "CommitState"}) {
        CAPTURE(operation);
        EngineHarness<RawProtocol> harness;
        harness.Open();
        harness.line.isPresent = false;
        harness.Run(1s);
        harness.line.isPresent = true;
        harness.line.failures[operation] = {u"odd", true};
        harness.Run(20s);
        CHECK(harness.events.boxes.size() == (std::string(operation) == "CommitState" ? 2 : 1));
        CHECK(harness.Snapshot().caption == u"LASER - No Link");
        harness.line.failures.clear();
        harness.Run(2s);
        CHECK(harness.Snapshot().caption == u"LASER COM1:2400,N,8,1,Xon/Xoff");
    }
}

TEST_CASE("PortLink: a fault of a device that stays is one report until the line works again") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    harness.line.failures["GetStatus"] = {u"odd", false};
    harness.Run(10s);
    CHECK(harness.events.boxes.size() == 1);
    harness.line.failures.clear();
    harness.Exchange("x");
    harness.Run(1100ms);
    harness.line.failures["Read"] = {u"odd", false};
    harness.line.Arrive("y");
    harness.Run(10s);
    CHECK(harness.events.boxes.size() == 2);
}

TEST_CASE("LineService: a full receive buffer is an overrun, and the bytes after it arrive") {
    EngineHarness<WaitingProtocol> harness("[Port Settings]\nflow control=None\n");
    harness.Open();
    harness.Exchange(std::string(4000, 'x'));
    CHECK(harness.Status() == "Waiting...");
    harness.Exchange("the rest");
    CHECK(std::count(harness.events.statusLines.begin(), harness.events.statusLines.end(),
                     u"Over Run Error! Data loss has occurred!") == 1);
    harness.Run(200ms);
    CHECK(harness.Status() == "Waiting...");
    harness.Exchange("!");
    CHECK(harness.protocol->buffer->TakeMessage('!', false)->text == "the rest!");
}

TEST_CASE("LineService: an answer held by XOFF goes out at XON, whether the driver or the program sees the two bytes") {
    EngineHarness<WaitingProtocol> harness("[Port Settings]\nflow control=None\n");
    harness.Open();
    CHECK(harness.Exchange("\x13").empty());
    harness.SendText("held ");
    CHECK(harness.Run(10s).empty());
    CHECK(harness.Exchange("\x11") == "held ");
    harness.SendText("freed");
    CHECK(harness.Run(100ms) == "freed");
    CHECK(harness.Exchange("\x13\x11").empty());
    harness.SendText("last one wins");
    CHECK(harness.Run(100ms) == "last one wins");
    // Where the driver tells, it goes out with the XON.
    auto settings = harness.engine->Settings();
    settings.flowControl = u"Xon/Xoff";
    harness.engine->ApplySettings(settings);
    harness.Exchange("\x13");
    harness.SendText("held");
    CHECK(harness.Run(10s).empty());
    harness.line.Arrive("\x11");
    CHECK(harness.Run(100ms) == "held");
}

TEST_CASE("Monitor: timers and commands go on while the line is held for an hour") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    harness.engine->Stations().SetPingText("ping ", 1000ms);
    harness.line.holds.cts = true;
    harness.Run(10s);
    CHECK(harness.Snapshot().lamps.holds.cts);
    bool isDone = false;
    harness.engine->Post([&](Monitor&) { isDone = true; });
    harness.Run(1h);
    CHECK(isDone);
    harness.line.holds.cts = false;
    CHECK(harness.Run(500ms).size() >= 3600 * 5);
}

TEST_CASE("LineService: a write of five seconds lights no lamp, and is not repeated") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    harness.line.writeDuration = 5s;
    harness.SendText("slow");
    harness.engine->RunPass();
    CHECK_FALSE(harness.Snapshot().lamps.transmitted);
    CHECK(harness.Run(1s) == "slow");
    harness.line.writeDuration = 4s;
    harness.SendText("quick");
    harness.engine->RunPass();
    CHECK(harness.Snapshot().lamps.transmitted);
    harness.Run(200ms);
    CHECK_FALSE(harness.Snapshot().lamps.transmitted);
}

TEST_CASE("LineTests: the loop-back test succeeds if its message returns in time, in pieces and after noise") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    for (const bool isJoined : {true, false}) {
        harness.line.bytesPerSecond = 100;
        harness.engine->StartLoopbackTest();
        const std::string message = harness.Run(300ms);
        CHECK(message == "LocalTestMessage@");
        CHECK(harness.Status() == "Waiting...");
        if (isJoined) {
            harness.Exchange("noise@noise" + message.substr(0, 5));
            harness.Exchange("localTESTmessage@");
            CHECK(harness.Status() == "Local Loopback Test Success");
        }
        harness.Run(1s);
        CHECK(harness.Status() == (isJoined ? "Local Loopback Test Success" : "Local Loopback Test Failure"));
    }
}

TEST_CASE("LineTests: a loop-back test on a held line ends in time, shows the hold, and sends nothing later") {
    EngineHarness<TarvinApp> harness("[Port Settings]\nflow control=None\ntransmit delay=0\n");
    harness.folder.WriteFile("NC/13.", "N1\n");
    harness.Open();
    harness.Exchange("\x13");
    harness.engine->StartLoopbackTest();
    CHECK(harness.Run(1200ms).empty());
    CHECK(harness.Status() == "Local Loopback Test Failure");
    CHECK(harness.Snapshot().lamps.holds.xoff);
    CHECK(harness.Exchange("\x11").empty());
    // The test is over: "@" is a character like any other, here the checksum of the request.
    REQUIRE(Message("ABSE13").ends_with("@\r"));
    CHECK(harness.Exchange(Message("ABSE13")) == Message("AAAK") + Message("AADAN1"));
}

TEST_CASE("LineTests: the XOFF test ends with an XON after three seconds") {
    EngineHarness<RawProtocol> harness;
    harness.Open();
    harness.engine->Tests().StartXoff();
    CHECK(harness.Run(2900ms) == "\x13");
    CHECK(harness.Run(10s) == "\x11");
}

TEST_CASE("Network: a reset puts the link back and keeps an upload's file") {
    struct Case {
        int networkMode;
        int serverMode;
        const char* status;
        bool showsButtons;
        bool keepsPinging;
    };
    for (const Case& each : {Case{0, 0, "Waiting...", true, false},
                             {1, 1, "Waiting...", false, false},
                             {1, 0, "Client: Machine cannot find DNC Server", false, true}}) {
        EngineHarness<RawProtocol> harness;
        harness.Open();
        auto settings = harness.engine->Settings();
        settings.networkMode = each.networkMode;
        settings.serverMode = each.serverMode;
        harness.engine->ApplySettings(settings);
        harness.engine->Stations().SetPingText("ping", 1000ms);
        harness.engine->ReceiveFile(harness.folder / "NC/new");
        harness.Exchange("part");
        harness.engine->Stations().ResetLink();
        CHECK(harness.Run(5s).empty() != each.keepsPinging);
        CHECK(harness.Status() == each.status);
        CHECK(harness.Snapshot().sendFile.isVisible == each.showsButtons);
        CHECK(harness.folder.ReadFile("NC/new.part") == "part");
        CHECK(std::none_of(harness.events.statusLines.begin(), harness.events.statusLines.end(),
                           [](const KelText& line) { return line.starts_with(u"Upload Cancelled"); }));
    }
}

TEST_CASE("LineTrace: it shows both directions byte for byte, and a slow reader loses lines and delays nothing") {
    EngineHarness<RawProtocol> harness("[Port Settings]\nflow control=None\n");
    harness.Open();
    harness.SendText("unseen");
    harness.Run(10ms);
    harness.engine->Traffic().SetWanted(true);
    harness.SendText("a%s\r");
    harness.SendText("b");
    harness.Exchange("A\r\n\x7F\x80");
    harness.SendText("line\n");
    harness.engine->Output().SendChar(0x12, false);
    harness.engine->Output().SendChar('x', false);
    harness.SendText(std::string(300, 'y'));
    harness.Exchange("z");
    CHECK(harness.events.trafficWakeUps == 1);
    CHECK(TrafficOf(*harness.engine) == Strings{"TX a%s[0d]b", "RX A[0d][0a]\x7F[80]", "TX line[0a]", "TX [12]",
                                                "TX x" + std::string(252, 'y'), "TX " + std::string(48, 'y'), "RX z"});
    for (int count = 0; count < 5003; ++count)
        harness.Exchange("z");
    const Strings lines = TrafficOf(*harness.engine);
    CHECK(lines.size() == 5001);
    CHECK(lines.back() == "... 3 lines not shown ...");
}
