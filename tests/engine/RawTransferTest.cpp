#include "harness/EngineHarness.h"
#include "protocol/RawProtocol.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

using RawHarness = EngineHarness<RawProtocol>;

std::string EveryByte(std::size_t length) {
    std::string bytes(length, '\0');
    for (std::size_t index = 0; index < length; ++index)
        bytes[index] = static_cast<char>(index * 7 + index / 256);
    return bytes;
}

void StartSending(RawHarness& harness, std::string_view content) {
    harness.folder.WriteFile("NC/part", content);
    harness.engine->SendFile(harness.folder / "NC/part");
}

}

TEST_CASE("RawProtocol: a download puts every byte of the file on the line, in blocks that fit its speed") {
    struct Case {
        const char* baudRate;
        std::size_t length;
        std::size_t firstBlock;
    };
    for (const Case& each : {Case{"1200", 1000, 75}, {"2400", 1000, 100}, {"115200", 3, 3}, {"nonsense", 5, 1}}) {
        CAPTURE(each.baudRate);
        RawHarness harness("[Port Settings]\nflow control=None\nbaudrate=" + std::string(each.baudRate) + "\n");
        harness.Open();
        harness.line.bytesPerSecond = 120;
        const std::string content = EveryByte(each.length);
        StartSending(harness, content);
        CHECK_FALSE(harness.Snapshot().sendFile.isEnabled);
        CHECK(harness.Snapshot().endDialog == EndDialog::Download);
        harness.engine->RunPass();
        harness.engine->RunPass();
        CHECK(harness.line.sent.size() + harness.line.output.size() == each.firstBlock);
        CHECK(harness.Run(20s) == content);
        CHECK(harness.Status() == "Download Completed " + (harness.folder / "NC/part").string() + " - " +
                                      std::to_string(each.length) + " bytes");
        CHECK(harness.Snapshot().sendFile.isEnabled);
        CHECK(harness.Snapshot().endDialog == EndDialog::None);
    }
}

TEST_CASE("RawProtocol: each line waits for its delay, and the end character follows the last one") {
    RawHarness harness("[Port Settings]\nflow control=None\n");
    DownloadSettings settings;
    harness.Open();
    settings = harness.engine->Settings();
    settings.lineDelayMilliseconds = 500;
    settings.sendEndCode = 1;
    harness.engine->ApplySettings(settings);
    for (int transfer = 0; transfer < 2; ++transfer) {
        StartSending(harness, "N1\r\nN2\r\nN3");
        CHECK(harness.Run(400ms) == "N1\r\n");
        CHECK(harness.Run(500ms) == "N2\r\n");
        CHECK(harness.Snapshot().transferState == TransferState::Downloading);
        CHECK(harness.Run(500ms) == "N3\x04");
        CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
    }
}

TEST_CASE("RawProtocol: an empty file is done at once, and an unreadable one says so") {
    RawHarness harness;
    harness.Open();
    StartSending(harness, "");
    CHECK(harness.Run(1s).empty());
    CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
    harness.engine->SendFile(harness.folder / "NC/missing");
    CHECK(harness.Status() == "Download could not open/read from " + (harness.folder / "NC/missing").string());
    CHECK(harness.Snapshot().sendFile.isEnabled);
}

TEST_CASE("RawProtocol: the character delay passes between the end of one block and the next") {
    RawHarness harness;
    harness.Open();
    auto settings = harness.engine->Settings();
    settings.characterDelayMilliseconds = 500;
    harness.engine->ApplySettings(settings);
    harness.line.bytesPerSecond = 100;
    StartSending(harness, EveryByte(300));
    CHECK(harness.Run(450ms).empty());
    // Each block takes a second on the line, and half a second before that.
    harness.RunUntil([&] { return harness.line.sent.size() == 300; });
    CHECK(harness.line.sent == EveryByte(300));
    CHECK(harness.clock.Now().time_since_epoch() - 1h > 4400ms);
    CHECK(harness.clock.Now().time_since_epoch() - 1h < 5100ms);
}

TEST_CASE("RawProtocol: a download under XOFF goes on at XON, with every flow control") {
    for (const char* flow : {"None", "Hardware", "Xon/Xoff", "Combined"}) {
        CAPTURE(flow);
        RawHarness harness("[Port Settings]\nflow control=" + std::string(flow) + "\n");
        harness.Open();
        harness.line.bytesPerSecond = 100;
        const std::string content = EveryByte(350);
        StartSending(harness, content);
        std::string sent = harness.Run(1200ms);
        harness.line.Arrive("\x13");
        sent += harness.Run(1min);
        CHECK(sent.size() < 350);
        CHECK(harness.Snapshot().lamps.holds.xoff);
        CHECK(harness.Snapshot().transferState == TransferState::Downloading);
        harness.line.Arrive("\x11");
        sent += harness.Run(10s);
        CHECK(sent == content);
        CHECK_FALSE(harness.Snapshot().lamps.holds.xoff);
        CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
    }
}

TEST_CASE("RawProtocol: a partial write loses and repeats nothing") {
    RawHarness harness;
    harness.Open();
    harness.line.outputRoom = 30;
    harness.line.bytesPerSecond = 100;
    const std::string content = EveryByte(250);
    StartSending(harness, content);
    CHECK(harness.Run(10min) == content);
    CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
}

TEST_CASE("RawProtocol: an upload stores every byte, and ends as the user says") {
    const std::string content = EveryByte(9000);
    for (const bool isCompleted : {true, false}) {
        RawHarness harness("[Port Settings]\nflow control=None\n");
        harness.Open();
        harness.engine->ReceiveFile(harness.folder / "NC/new");
        CHECK(harness.Snapshot().endDialog == EndDialog::Upload);
        for (std::size_t start = 0; start < content.size(); start += 3000)
            CHECK(harness.Exchange(content.substr(start, 3000)).empty());
        harness.Run(200ms);
        CHECK(harness.Status() == "Uploading " + (harness.folder / "NC/new").string() + " - 9000 bytes received.");
        if (isCompleted)
            harness.engine->CompleteUpload();
        else
            harness.engine->CancelUpload();
        CHECK(harness.Status() == (isCompleted ? "Upload Completed " : "Upload Cancelled ") +
                                      (harness.folder / "NC/new").string() +
                                      (isCompleted ? " - 9000 bytes in file." : ""));
        CHECK(harness.Snapshot().receiveFile.isEnabled);
        CHECK(harness.Snapshot().progressPosition == 0);
        harness.Exchange("late");
        CHECK(harness.folder.ReadFile(isCompleted ? "NC/new" : "NC/new.part") == content);
    }
}

TEST_CASE("RawProtocol: a cancelled download sends its queued block and no more") {
    RawHarness harness;
    harness.Open();
    harness.line.bytesPerSecond = 100;
    StartSending(harness, EveryByte(1000));
    std::string sent = harness.Run(500ms);
    harness.engine->CancelDownload();
    sent += harness.Run(20s);
    CHECK(sent.size() == 200);
    CHECK(harness.Status() == "Download Cancelled " + (harness.folder / "NC/part").string());
}

TEST_CASE("RawProtocol: the start character goes out before the delay, and the user is called after it") {
    RawHarness harness;
    harness.Open();
    auto settings = harness.engine->Settings();
    settings.sendStartCode = 1;
    settings.sendEndCode = 1;
    settings.transmitDelaySeconds = 3;
    harness.engine->ApplySettings(settings);
    harness.engine->Traffic().SetWanted(true);
    harness.protocol->DownloadNow();
    CHECK(harness.Run(2900ms) == "\x12");
    CHECK(harness.Status() == "Download Waiting For Controller");
    CHECK(harness.events.attentionCalls == 0);
    CHECK(harness.Run(300ms).empty());
    CHECK(harness.Status() == "Download Preparation");
    CHECK(harness.events.attentionCalls == 1);
    const auto traffic = harness.engine->Traffic().Take();
    REQUIRE(traffic.size() == 2);
    CHECK(traffic[0].text == "TX [12]");
    CHECK(traffic[1].text == "Download delayed for 3 second(s).");
}

TEST_CASE("RawProtocol: a lost link ends a transfer, and the received part is kept") {
    RawHarness harness;
    harness.Open();
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    harness.Exchange("first");
    harness.line.isPresent = false;
    harness.Run(100ms);
    CHECK(harness.Status() == "Upload Error(s) " + (harness.folder / "NC/new").string() + ": the port was lost");
    CHECK(harness.folder.ReadFile("NC/new.part") == "first");
    harness.line.isPresent = true;
    harness.RunUntil([&] { return !harness.Snapshot().linkTitle.ends_with(u"No Link"); }, 2s);
    StartSending(harness, EveryByte(1000));
    harness.line.bytesPerSecond = 100;
    harness.Run(3s);
    harness.line.isPresent = false;
    harness.Run(100ms);
    // Half a file that goes on after a gap would be cut as if it were whole.
    CHECK(harness.Status() == "Download Error(s) " + (harness.folder / "NC/part").string() + ": the port was lost");
}
