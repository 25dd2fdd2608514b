#include "harness/EngineHarness.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

using Harness = EngineHarness<Protocol>;

constexpr char profile[] = "[Port Settings]\ntransmit delay=0\nflow control=None\n[Files]\nfile extension=nc\n";

void Apply(Harness& harness, std::int32_t controllerKind) {
    DownloadSettings settings = harness.engine->Settings();
    settings.controllerKind = controllerKind;
    harness.engine->ApplySettings(settings);
}

}

TEST_CASE("Monitor: another kind of controller is served at once, and ends a transfer of the one before") {
    Harness harness(profile);
    harness.Open();
    CHECK(harness.Snapshot().isConversation);
    CHECK(harness.Exchange("ABTS \r").starts_with("AATS"));
    harness.Exchange("ABST100 \r");
    Apply(harness, controllerByHand);
    CHECK(harness.Status().find("Upload Error(s)") == 0);
    CHECK_FALSE(harness.Snapshot().isConversation);
    CHECK((harness.Snapshot().sendFile.isVisible && harness.Snapshot().receiveFile.isEnabled));
    // These are plain bytes now.
    CHECK(harness.Exchange("ABTS \r").empty());
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    harness.Exchange("ABST1 \r");
    Apply(harness, controllerConversation);
    CHECK(harness.Snapshot().isConversation);
    CHECK(harness.Snapshot().endDialog == EndDialog::None);
    CHECK(harness.folder.ReadFile("NC/new.part") == "ABST1 \r");
    CHECK(harness.Exchange("ABTS \r").starts_with("AATS"));
    // A receive that waits for the controller's next upload ends too.
    harness.engine->ReceiveFile(harness.folder / "NC/new");
    CHECK(harness.Snapshot().endDialog == EndDialog::Upload);
    Apply(harness, controllerByHand);
    CHECK(harness.Snapshot().endDialog == EndDialog::None);
}

TEST_CASE("Monitor: the kind of controller is stored, and served from the start") {
    TemporaryFolder kept;
    for (const bool isFirst : {true, false}) {
        Harness harness(profile);
        if (!isFirst)
            harness.folder.WriteFile("LASER.INI", kept.ReadFile("settings"));
        harness.Open();
        CHECK(harness.Snapshot().isConversation == isFirst);
        CHECK(harness.Snapshot().sendFile.isVisible);
        Apply(harness, controllerByHand);
        harness.engine->Close();
        kept.WriteFile("settings", harness.folder.ReadFile("LASER.INI"));
    }
}

TEST_CASE("Monitor: settings that say nothing about the port leave it and a transfer alone") {
    Harness harness(profile);
    harness.Open();
    Apply(harness, controllerByHand);
    harness.folder.WriteFile("NC/part", std::string(1000, 'x'));
    harness.line.bytesPerSecond = 100;
    harness.engine->SendFile(harness.folder / "NC/part");
    std::string sent = harness.Run(2s);
    harness.line.calls.clear();
    DownloadSettings settings = harness.engine->Settings();
    settings.silenceSeconds = 5;
    settings.uploadPath = u"elsewhere";
    settings.replacedFilesKept = 1;
    harness.engine->ApplySettings(settings);
    // Without hardware flow control the handshake switches have no effect.
    harness.engine->SetHandshakes(false, false);
    CHECK(harness.line.calls.empty());
    CHECK(harness.engine->Settings().uploadPath == u"elsewhere");
    CHECK(harness.engine->Settings().ctsFlow == 0);
    CHECK((sent + harness.Run(10s)).size() == 1000);
    CHECK(harness.Snapshot().transferState == TransferState::DownloadCompleted);
    settings.baudRate = u"9600";
    harness.engine->ApplySettings(settings);
    CHECK(harness.Snapshot().caption == u"LASER COM1:9600,N,8,1,None");
}
