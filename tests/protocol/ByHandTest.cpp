#include "harness/EngineHarness.h"
#include "protocol/TarvinApp.h"

namespace tarvin::test {

TEST_CASE("Monitor: a transfer by hand breaks into none of the controller, and changes none that has ended") {
    EngineHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/other", "G01\n");
    harness.Open();
    harness.engine->Stations().ResetLink();
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

}
