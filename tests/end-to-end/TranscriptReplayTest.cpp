#include "end-to-end/ServiceFixture.h"
#include "harness/Transcript.h"

#include <csignal>

#include <doctest/doctest.h>

using namespace tarvin::test;

TEST_SUITE_BEGIN("service on any system");

TEST_CASE("Service: it holds every transcript over a pseudo-terminal") {
    for (const Transcript& transcript : Transcripts()) {
        CAPTURE(transcript.name);
        ServiceFixture fixture;
        fixture.WriteSettings(WithFolder(SettingsProfile(transcript), fixture.NcFolder()));
        MakeFilesBefore(transcript, fixture.installation);
        fixture.Start();
        REQUIRE(fixture.service->WaitForOutput("Waiting..."));
        for (const TranscriptStep& step : transcript.steps) {
            CAPTURE(step.send);
            fixture.terminal->Write(step.send);
            CHECK(fixture.terminal->Read(step.expect.size()) == step.expect);
            if (!step.status.empty())
                CHECK(fixture.service->WaitForLastLine(" " + WithFolder(step.status, fixture.NcFolder())));
        }
        // The next bytes are the answer to this test, so the service has sent no unexpected message before.
        fixture.terminal->Write(Message("ABTS"));
        CHECK(fixture.terminal->Read(6) == Message("AATS"));
        CHECK(fixture.Stop() == 0);
        for (const TranscriptStep& step : transcript.steps)
            CHECK(fixture.service->Output().find(step.message) != std::string::npos);
        CheckFilesAfter(transcript, fixture.installation);
    }
}

TEST_SUITE_END();
