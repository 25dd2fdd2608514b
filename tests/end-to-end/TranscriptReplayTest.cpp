#include "end-to-end/ServiceFixture.h"
#include "harness/Transcript.h"

#include <csignal>

#include <doctest/doctest.h>

using namespace tarvin::test;

TEST_SUITE_BEGIN("service on any system");

TEST_CASE("the real service holds every transcript over a real line") {
    for (const Transcript& transcript : Transcripts()) {
        CAPTURE(transcript.name);
        ServiceFixture fixture;
        fixture.WriteSettings(WithFolder(SettingsProfile(transcript), fixture.NcFolder()));
        MakeFilesBefore(transcript, fixture.folder);
        fixture.Start();
        REQUIRE(fixture.service->WaitForOutput("Waiting..."));
        for (const TranscriptStep& step : transcript.steps) {
            CAPTURE(step.send);
            fixture.terminal->Write(step.send);
            CHECK(fixture.terminal->Read(step.expect.size()) == step.expect);
            if (!step.status.empty())
                CHECK(fixture.service->WaitForLastLine(" " + WithFolder(step.status, fixture.NcFolder())));
        }
        // Nothing is left over that nobody asked for.
        fixture.terminal->Write(Message("ABTS"));
        CHECK(fixture.terminal->Read(6) == Message("AATS"));
        fixture.service->Signal(SIGTERM);
        CHECK(fixture.service->WaitForExit() == 0);
        for (const TranscriptStep& step : transcript.steps)
            CHECK(fixture.service->Output().find(step.message) != std::string::npos);
        CheckFilesAfter(transcript, fixture.folder);
    }
}

TEST_SUITE_END();
