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

// Opens the port, at the first call, with changed settings.
void Change(RawHarness& harness, const std::function<void(DownloadSettings&)>& change) {
    if (harness.line.calls.empty())
        harness.Open();
    DownloadSettings settings = harness.engine->Settings();
    change(settings);
    harness.engine->ApplySettings(settings);
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

TEST_CASE("RawProtocol: each line waits for its delay, between the start code and the end code") {
    RawHarness harness("[Port Settings]\nflow control=None\n");
    Change(harness, [](DownloadSettings& settings) {
        settings.lineDelayMilliseconds = 400;
        settings.characterDelayMilliseconds = 100;
        settings.sendStartCode = settings.sendEndCode = 1;
    });
    for (int transfer = 0; transfer < 2; ++transfer) {
        StartSending(harness, "N1\r\nN2\r\nN3");
        CHECK(harness.Run(90ms) == "\x12");
        CHECK(harness.Run(310ms) == "N1\r\n");
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
    Change(harness, [](DownloadSettings& settings) { settings.characterDelayMilliseconds = 500; });
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

TEST_CASE("RawProtocol: a download held by CTS sends nothing, and goes on where it was") {
    RawHarness harness("[Port Settings]\nflow control=Hardware\n");
    Change(harness, [](DownloadSettings& settings) { settings.sendStartCode = settings.sendEndCode = 1; });
    harness.line.holds.cts = true;
    const std::string content = EveryByte(350);
    StartSending(harness, content);
    CHECK(harness.Run(1min).empty());
    harness.line.holds.cts = false;
    harness.line.bytesPerSecond = 100;
    std::string sent = harness.Run(1200ms);
    harness.line.holds.cts = true;
    sent += harness.Run(1min);
    CHECK(sent.size() < 350);
    harness.line.holds.cts = false;
    CHECK(sent + harness.Run(10s) == "\x12" + content + "\x04");
    CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
}

TEST_CASE("RawProtocol: an upload is what stands between the codes that are switched on") {
    struct Case {
        bool hasStart;
        bool hasEnd;
        std::string_view arriving;
        std::string_view stored;
        bool isCompleted;
    };
    const Case cases[] = {
        {false, false,
         "ab\x12"
         "cd\x04"
         "ef",
         "ab\x12"
         "cd\x04"
         "ef",
         false},
        {true, false, "leader\x12N1\r\nN2\x04N3", "N1\r\nN2\x04N3", false},
        {false, true, "N1\x12\x04late\x04later", "N1\x12", true},
        {true, true, "x\x04y\x12N1\nN2\n\x04late\x12N3\x04", "N1\nN2\n", true},
        {true, true, "nothing begins\x04", "", false},
    };
    for (const Case& each : cases) {
        // How the bytes are divided depends on the driver.
        for (const std::size_t pieceSize : {std::size_t(1), std::size_t(3), each.arriving.size()}) {
            CAPTURE(each.arriving);
            CAPTURE(pieceSize);
            RawHarness harness("[Port Settings]\nflow control=None\n");
            Change(harness, [&](DownloadSettings& settings) {
                settings.sendStartCode = each.hasStart ? 1 : 0;
                settings.sendEndCode = each.hasEnd ? 1 : 0;
            });
            // The second transfer begins as the first one did.
            for (int transfer = 0; transfer < 2; ++transfer) {
                harness.engine->ReceiveFile(harness.folder / "NC/new");
                for (std::size_t start = 0; start < each.arriving.size(); start += pieceSize)
                    harness.Exchange(each.arriving.substr(start, pieceSize));
                CHECK((harness.Snapshot().transferState == TransferState::UploadCompleted) == each.isCompleted);
                // Windows keeps a file that is being written from other readers.
                harness.engine->CancelUpload();
                CHECK(harness.folder.ReadFile(each.isCompleted ? "NC/new" : "NC/new.part") == each.stored);
            }
        }
    }
}

TEST_CASE("RawProtocol: XOFF and XON of software flow control stop the line and are no part of an upload") {
    RawHarness harness("[Port Settings]\nflow control=Xon/Xoff\n");
    harness.Open();
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    harness.Exchange("N1\x13N2\x11N3");
    harness.engine->CompleteUpload();
    CHECK(harness.folder.ReadFile("NC/new") == "N1N2N3");
}

TEST_CASE("RawProtocol: a silence completes an upload, counted from the last byte and never before the first") {
    RawHarness harness("[Port Settings]\nflow control=None\n");
    Change(harness, [](DownloadSettings& settings) {
        settings.silenceSeconds = 5;
        settings.sendStartCode = 1;
    });
    const auto state = [&] { return harness.Snapshot().transferState; };
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    harness.Run(1min);
    harness.Exchange("leader");
    harness.Run(1min);
    harness.Exchange("\x12");
    harness.Run(1min);
    CHECK(state() == TransferState::Uploading);
    for (int line = 0; line < 3; ++line) {
        harness.Exchange("N1\n");
        harness.Run(4900ms);
        CHECK(state() == TransferState::Uploading);
    }
    harness.Run(200ms);
    CHECK(state() == TransferState::UploadCompleted);
    CHECK(harness.folder.ReadFile("NC/new") == "N1\nN1\nN1\n");
    CHECK(harness.Snapshot().endDialog == EndDialog::None);

    // The silence of an upload that was cancelled is none of the next one.
    harness.engine->ReceiveFile(harness.folder / "NC/second");
    harness.Exchange("\x12N2");
    harness.engine->CancelUpload();
    harness.engine->ReceiveFile(harness.folder / "NC/second");
    harness.Run(1min);
    CHECK(state() == TransferState::Uploading);
    Change(harness, [](DownloadSettings& settings) { settings.silenceSeconds = 0; });
    harness.Exchange("\x12N2");
    harness.Run(10min);
    CHECK(state() == TransferState::Uploading);
}

TEST_CASE("RawProtocol: without a link nothing begins, and nothing begins by itself when the link is there") {
    RawHarness harness;
    harness.line.isPresent = false;
    harness.Open();
    StartSending(harness, EveryByte(10));
    CHECK(harness.Status() == "Download Error(s) " + (harness.folder / "NC/part").string() + ": there is no link");
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    CHECK(harness.Status() == "Upload Error(s) " + (harness.folder / "NC/new").string() + ": there is no link");
    CHECK(harness.Snapshot().sendFile.isEnabled);
    harness.line.isPresent = true;
    CHECK(harness.Run(10s).empty());
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
