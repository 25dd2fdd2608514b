#include "harness/Transcript.h"

#include "harness/EngineHarness.h"
#include "protocol/TarvinApp.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

void Replay(const Transcript& transcript) {
    EngineHarness<TarvinApp> harness;
    const std::string ncFolder = (harness.folder / "NC").string();
    harness.folder.WriteFile("LASER.INI", WithFolder(SettingsProfile(transcript), ncFolder));
    MakeFilesBefore(transcript, harness.folder);
    harness.Open();
    for (const TranscriptStep& step : transcript.steps) {
        CAPTURE(step.send);
        harness.events.boxes.clear();
        std::string sent = harness.Exchange(step.send);
        for (int tick = 0; sent.size() < step.expect.size() && tick < 100; ++tick)
            sent += harness.Run(100ms);
        CHECK(sent == step.expect);
        if (!step.status.empty()) {
            CHECK(harness.Run(150ms).empty());
            CHECK(harness.Status() == WithFolder(step.status, ncFolder));
        }
        CHECK(harness.events.boxes == (step.message.empty() ? std::vector<std::string>() : std::vector{step.message}));
    }
    harness.engine->Close();
    CheckFilesAfter(transcript, harness.folder);
}

}

TEST_CASE("TarvinApp: every transcript holds on the engine") {
    for (const Transcript& transcript : Transcripts()) {
        CAPTURE(transcript.name);
        Replay(transcript);
    }
}

TEST_CASE("TarvinApp: a controller that sends byte by byte gets the same answers") {
    for (const Transcript& transcript : Transcripts()) {
        CAPTURE(transcript.name);
        Transcript bytewise = transcript;
        bytewise.steps.clear();
        for (const TranscriptStep& step : transcript.steps) {
            // A step with a single message gets its answer at its last byte.
            const bool isSingle =
                std::count(step.send.begin(), step.send.end(), '\r') == 1 && step.send.ends_with('\r');
            if (isSingle) {
                for (const char byte : step.send.substr(0, step.send.size() - 1))
                    bytewise.steps.push_back({std::string(1, byte), ""});
                bytewise.steps.push_back(step);
                bytewise.steps.back().send.assign(1, '\r');
            } else {
                bytewise.steps.push_back(step);
            }
        }
        Replay(bytewise);
    }
}

TEST_CASE("TarvinApp: a start character goes out once, before the delay and the acknowledgement") {
    EngineHarness<TarvinApp> harness;
    harness.Open();
    auto settings = harness.engine->Settings();
    settings.sendStartCode = 1;
    settings.transmitDelaySeconds = 2;
    harness.engine->ApplySettings(settings);
    harness.folder.WriteFile("NC/7.", "N1\n");
    harness.engine->Traffic().SetWanted(true);
    CHECK(harness.Exchange(Message("ABSE7")) == "\x12");
    const auto traffic = harness.engine->Traffic().Take();
    REQUIRE(traffic.size() == 3);
    CHECK(traffic[1].text == "TX [12]");
    CHECK(traffic[2].text == "Download delayed for 2 second(s).");
    CHECK(harness.Run(1900ms).empty());
    CHECK(harness.Run(200ms) == Message("AAAK") + Message("AADAN1"));
    CHECK(harness.Run(100ms).empty());
    CHECK(ToUtf8(harness.Snapshot().caption) == "LASER  7");
}

TEST_CASE("TarvinApp: a download that waits for its delay does not break into an upload") {
    EngineHarness<TarvinApp> harness("[Port Settings]\ntransmit delay=2\n");
    harness.Open();
    CHECK(harness.Exchange(Message("ABSE1")).empty());
    CHECK(harness.Exchange(Message("ABST2")) == Message("AAAK"));
    CHECK(harness.Run(5s).empty());
    CHECK(harness.Exchange(Message("ABADN1")) == Message("AAAK"));
    CHECK(harness.Exchange(Message("ABEF")) == Message("AAAK"));
    CHECK(harness.folder.ReadFile("NC/2.") == "N1\r\n");
}

TEST_CASE("Monitor: an overrun is seen although the next read ends it") {
    EngineHarness<TarvinApp> harness;
    harness.Open();
    harness.Exchange(std::string(4000, 'x'));
    harness.Exchange("x");
    CHECK(std::count(harness.events.statusLines.begin(), harness.events.statusLines.end(),
                     u"Over Run Error! Data loss has occurred!") == 1);
}

TEST_CASE("TarvinApp: an outage ends each transfer, and the next message about it is refused") {
    struct Case {
        const char* begin;
        const char* status;
        const char* next;
    };
    for (const Case& each : {Case{"ABSE7", "Download Error(s) ", "ABAK"},
                             {"ABST8", "Upload Error(s) ", "ABADN1"},
                             {"ABST8", "Upload Error(s) ", "ABEF"}}) {
        CAPTURE(each.next);
        EngineHarness<TarvinApp> harness;
        harness.Open();
        harness.folder.WriteFile("NC/7.", "N1\nN2\n");
        CHECK(harness.Exchange(Message(each.begin)).starts_with(Message("AAAK")));
        harness.Exchange("half a message");
        harness.line.isPresent = false;
        harness.Run(3s);
        CHECK(harness.Status().starts_with(each.status));
        harness.line.isPresent = true;
        harness.Run(2s);
        CHECK(harness.Exchange(Message(each.next)) == Message("AAAK03"));
        CHECK(harness.Exchange(Message(each.next)).empty());
        CHECK(harness.Exchange(Message("ABSE7")) == Message("AAAK") + Message("AADAN1"));
    }
}

TEST_CASE("TarvinApp: an outage drops a download that waits, and its answers with it") {
    EngineHarness<TarvinApp> harness("[Port Settings]\ntransmit delay=3\n");
    harness.Open();
    harness.folder.WriteFile("NC/7.", "N1\n");
    harness.Exchange(Message("ABSE7"));
    harness.line.isPresent = false;
    harness.Run(1s);
    CHECK(harness.Status().starts_with("Download Error(s) "));
    harness.line.isPresent = true;
    CHECK(harness.Run(1min).empty());
}

TEST_CASE(
    "TarvinApp: on a held line a repeated message is answered once, and another one takes the place of its answer") {
    for (const char* flow : {"None", "Hardware"}) {
        CAPTURE(flow);
        const bool isHardware = *flow == 'H';
        EngineHarness<TarvinApp> harness("[Port Settings]\ntransmit delay=0\nflow control=" + std::string(flow) + "\n");
        harness.Open();
        const auto hold = [&](bool isHeld) {
            if (isHardware)
                harness.line.holds.cts = isHeld;
            else
                harness.line.Arrive(isHeld ? "\x13" : "\x11");
            harness.Settle();
        };
        CHECK(harness.Exchange(Message("ABST8")) == Message("AAAK"));
        hold(true);
        for (int repeat = 0; repeat < 3; ++repeat)
            CHECK(harness.Exchange(Message("ABADone")).empty());
        hold(false);
        CHECK(harness.Run(100ms) == Message("AAAK"));
        CHECK(harness.Exchange(Message("ABADtwo")) == Message("AAAK"));
        hold(true);
        harness.Exchange(Message("ABADthree"));
        harness.Exchange(Message("ABTS"));
        hold(false);
        CHECK(harness.Run(100ms) == Message("AATS"));
        CHECK(harness.folder.ReadFile("NC/8..part") == "one\r\ntwo\r\nthree\r\n");
    }
}

TEST_CASE("TarvinApp: a controller that speaks ends an XOFF of ten seconds, and the waiting answer goes out once") {
    for (const char* flow : {"None", "Xon/Xoff"}) {
        CAPTURE(flow);
        EngineHarness<TarvinApp> harness("[Port Settings]\ntransmit delay=0\nflow control=" + std::string(flow) + "\n");
        harness.Open();
        harness.Exchange("\x13");
        CHECK(harness.Exchange(Message("ABTS")).empty());
        harness.Run(9s);
        CHECK(harness.Exchange("noise\r" + Message("ABTS")).empty());
        harness.Run(2s);
        CHECK(harness.Exchange("noise\r").empty());
        CHECK(harness.Exchange(Message("ABTS")) == Message("AATS"));
        CHECK(harness.Exchange(Message("ABTS")) == Message("AATS"));
    }
}

TEST_CASE("TarvinApp: a controller that talks and takes nothing does not make the queue grow") {
    EngineHarness<TarvinApp> harness;
    harness.Open();
    harness.line.holds.cts = true;
    for (int message = 0; message < 2000; ++message)
        harness.Exchange(message % 2 == 0 ? Message("ABTS") : Message("ABST" + std::to_string(message % 7)));
    harness.line.holds.cts = false;
    CHECK(harness.Run(1s).size() <= 20);
}

TEST_CASE("Monitor: no machine name leads the settings file out of the installation") {
    for (const char16_t* name : {u"TARVIN", u"LASER/../2", u"CUT 1"}) {
        EngineHarness<TarvinApp> harness;
        Monitor machine(harness.Setup(), name);
        machine.Load();
        machine.Open();
        const std::string title = ToUtf8(name);
        CHECK(ToUtf8(machine.Snapshot().caption) == title + " COM1:2400,N,8,1,Xon/Xoff");
        // No settings yet: the transmit delay of a first run, and no extension.
        CHECK(machine.Settings().transmitDelaySeconds == 2);
        CHECK(machine.Settings().fileExtension.empty());
        machine.Close();
        std::string fileName = title + ".INI";
        std::replace(fileName.begin(), fileName.end(), '/', '_');
        CHECK(std::filesystem::exists(harness.folder / fileName));
    }
}
