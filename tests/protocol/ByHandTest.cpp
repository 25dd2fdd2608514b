#include "harness/EngineHarness.h"
#include "protocol/TarvinApp.h"

namespace tarvin::test {

using namespace std::chrono_literals;

TEST_CASE("Monitor: a transfer by hand breaks into none of the controller, and changes none that has ended") {
    EngineHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/other", "G01\n");
    harness.Open();
    harness.Exchange("ABST100 \r");
    CHECK_FALSE((harness.Snapshot().sendFile.isEnabled || harness.Snapshot().receiveFile.isEnabled));
    harness.engine->SendFile(harness.folder / "NC/other");
    harness.engine->ReceiveFile(harness.folder / "NC/other");
    harness.engine->CancelDownload();
    harness.Exchange("ABADN10 \r");
    CHECK(harness.Exchange("ABEF \r").starts_with("AAAK"));
    const std::string completed = harness.Status();
    CHECK(completed.starts_with("Upload Completed"));
    CHECK((harness.Snapshot().sendFile.isEnabled && harness.Snapshot().receiveFile.isEnabled));
    harness.engine->CancelUpload();
    harness.engine->CompleteUpload();
    CHECK(harness.Status() == completed);
    CHECK(harness.folder.ReadFile("NC/other") == "G01\n");
}

TEST_CASE("Monitor: a receive by hand takes the next upload, and leaves everything else to the controller") {
    EngineHarness<TarvinApp> harness("[Port Settings]\ntransmit delay=0\n[Files]\nfile extension=nc\n");
    harness.folder.WriteFile("NC/7.nc", "N7\n");
    harness.Open();
    const std::string picked = (harness.folder / "NC/picked.txt").string();
    const auto isWaiting = [&] { return harness.Snapshot().endDialog == EndDialog::Upload; };
    harness.engine->ReceiveFile(picked);
    CHECK(isWaiting());
    CHECK_FALSE(std::filesystem::exists(picked));
    CHECK(harness.Exchange("ABTS \r").starts_with("AATS"));
    CHECK(harness.Exchange("ABSE7 \r").starts_with("AAAK"));
    CHECK(isWaiting());
    harness.Exchange("ABAK \r");
    CHECK(harness.Exchange("ABST.. \r").starts_with("AAAK03"));
    CHECK(isWaiting());
    CHECK(harness.Exchange("ABST100 \r").starts_with("AAAKq"));
    CHECK(harness.Status().starts_with("Uploading " + picked));
    harness.Exchange("ABADN10 \r");
    harness.Exchange("ABEF \r");
    CHECK_FALSE(isWaiting());
    CHECK(harness.folder.ReadFile("NC/picked.txt") == "N10\r\n");
    // The next one goes under its number again.
    harness.Exchange("ABST101 \r");
    harness.Exchange("ABEF \r");
    CHECK(harness.folder.ReadFile("NC/101.nc").empty());

    harness.engine->ReceiveFile(picked);
    harness.Run(9min + 59s);
    CHECK(isWaiting());
    harness.Run(2s);
    CHECK_FALSE(isWaiting());
    CHECK(harness.Status() == "Upload Cancelled " + picked + ": the machine has sent no file for 10 minutes");
    CHECK(harness.folder.ReadFile("NC/picked.txt") == "N10\r\n");
}

}
