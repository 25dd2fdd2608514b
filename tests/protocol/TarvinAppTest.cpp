#include "protocol/TarvinApp.h"

#include "harness/ProtocolHarness.h"
#include "harness/Transcript.h"

#include <algorithm>
#include <filesystem>
#include <string>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

TEST_CASE("TarvinApp: a data line whose checksum character completes a code is data") {
    // The checksum of this line is "F".
    std::string line;
    for (char filler = ' '; filler <= '~'; ++filler) {
        line = std::string("N1 ") + filler + "ABE";
        if (Message("ABAD" + line).ends_with("F\r"))
            break;
    }
    REQUIRE(Message("ABAD" + line).ends_with("ABEF\r"));
    ProtocolHarness<TarvinApp> harness;
    CHECK(harness.Exchange(Message("ABST1")) == Message("AAAK"));
    CHECK(harness.Exchange(Message("ABAD" + line)) == Message("AAAK"));
    CHECK(harness.State() == TransferState::Uploading);
    CHECK(harness.Exchange(Message("ABEF")) == Message("AAAK"));
    CHECK(harness.folder.ReadFile("NC/1.nc") == line + "\r\n");
}

TEST_CASE("TarvinApp: many messages in one arrival are all answered, empty ones between them too") {
    ProtocolHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/7.nc", "N1\nN2\n");
    const std::string all = "\n\r\r\n" + Message("ABTS") + "\n\r" + Message("ABSE7") + "\n" + Message("ABAK");
    CHECK(harness.Exchange(all) == Message("AATS") + Message("AAAK") + Message("AADAN1") + Message("AADAN2"));
    CHECK(harness.received.Count() == 0);
}

TEST_CASE("TarvinApp: whatever gives up a transfer leaves no file open, no line waiting and no bar") {
    struct Case {
        const char* name;
        std::string begin;
        std::string end;
        TransferState state;
    };
    const Case cases[] = {
        {"upload, link test", Message("ABST1") + Message("ABADN1"), Message("ABTS"), TransferState::LinkTest},
        {"upload, another file", Message("ABST1") + Message("ABADN1"), Message("ABSE8"),
         TransferState::DownloadCouldNotOpen},
        {"upload, its end", Message("ABST1") + Message("ABADN1"), Message("ABEF"), TransferState::UploadCompleted},
        {"upload, a bad number", Message("ABST1") + Message("ABADN1"), Message("ABST.."),
         TransferState::UploadCouldNotOpen},
        {"download, link test", Message("ABSE7"), Message("ABTS"), TransferState::LinkTest},
        {"download, out of step", Message("ABSE7"), Message("ABXX"), TransferState::DownloadErrors},
        {"download, its end", Message("ABSE7") + Message("ABAK"), Message("ABAK"), TransferState::DownloadCompleted},
        {"download, a missing file", Message("ABSE7"), Message("ABSE8"), TransferState::DownloadCouldNotOpen},
    };
    for (const Case& each : cases) {
        CAPTURE(each.name);
        ProtocolHarness<TarvinApp> harness;
        harness.folder.WriteFile("NC/7.nc", "N1\nN2\n");
        harness.Exchange(each.begin);
        REQUIRE(harness.observed.transfer.IsUnderWay());
        CHECK(harness.observed.transfer.Bar().position > 0);
        harness.Exchange(each.end);
        CHECK(harness.State() == each.state);
        CHECK_FALSE(harness.observed.transfer.IsStoring());
        CHECK(harness.observed.transfer.NextLine().empty());
        CHECK(harness.observed.transfer.Bar().position == 0);
    }
}

TEST_CASE("TarvinApp: a request during the transmit delay starts the delay anew, and an upload ends it") {
    ProtocolHarness<TarvinApp> harness;
    harness.settings.transmitDelaySeconds = 2;
    harness.folder.WriteFile("NC/7.nc", "N1\n");
    CHECK(harness.Exchange(Message("ABSE7")).empty());
    CHECK(harness.Wait(1500ms).empty());
    CHECK(harness.Exchange(Message("ABSE7")).empty());
    CHECK(harness.Wait(1500ms).empty());
    CHECK(harness.Wait(500ms) == Message("AAAK") + Message("AADAN1"));
    CHECK(harness.Exchange(Message("ABSE7")).empty());
    CHECK(harness.Exchange(Message("ABST8")) == Message("AAAK"));
    CHECK(harness.Wait(1h).empty());
    CHECK(harness.State() == TransferState::Uploading);
}

TEST_CASE("TarvinApp: a refused upload leaves a download that waits alone, and an accepted one ends it") {
    ProtocolHarness<TarvinApp> harness;
    harness.settings.transmitDelaySeconds = 2;
    harness.settings.sendsChecksums = 1;
    harness.folder.WriteFile("NC/7.nc", "N1\n");
    harness.Exchange(Message("ABSE7"));
    harness.Wait(1s);
    CHECK(harness.Exchange(Message("ABST..")) == Message("AAAK03"));
    CHECK(harness.Exchange("ABST7x\r") == Message("AAAK03"));
    CHECK(harness.State() == TransferState::DownloadWaiting);
    CHECK(harness.Wait(1s) == Message("AAAK") + Message("AADAN1"));
    harness.Exchange(Message("ABSE7"));
    harness.observed.states.clear();
    CHECK(harness.Exchange(Message("ABST7")) == Message("AAAK"));
    CHECK(harness.observed.states == std::vector{TransferState::DownloadErrors, TransferState::Uploading});
}

TEST_CASE("TarvinApp: a request drops the acknowledgements of the transfer that it gives up") {
    ProtocolHarness<TarvinApp> harness;
    harness.Exchange(Message("ABST5") + Message("ABADN1"));
    CHECK(harness.sender.dropCount == 0);
    harness.Exchange(Message("ABST6"));
    CHECK(harness.sender.dropCount == 1);
    harness.Exchange(Message("ABST6"));
    CHECK(harness.sender.dropCount == 1);
}

TEST_CASE("TarvinApp: of a flood of new numbers an hour's share is taken, and the rest is refused and told once") {
    ProtocolHarness<TarvinApp> harness;
    harness.settings.newFilesPerHour = 3;
    harness.folder.WriteFile("NC/old.nc", "");
    const auto asksToStore = [&](const std::string& number) { return harness.Exchange(Message("ABST" + number)); };
    const auto stores = [&](const std::string& number) {
        return asksToStore(number) == Message("AAAK") &&
               harness.Exchange(Message("ABADN1") + Message("ABEF")) == Message("AAAK") + Message("AAAK");
    };
    CHECK(stores("1"));
    // A request that brings no line leaves its name in the folder too.
    CHECK(asksToStore("2") == Message("AAAK"));
    harness.Wait(40min);
    CHECK(stores("3"));
    const std::size_t rowsBefore = harness.observed.ended.size();
    for (const char* number : {"4", "5", "6"}) {
        CHECK(asksToStore(number) == Message("AAAK03"));
        CHECK(harness.State() == TransferState::UploadCouldNotOpen);
        CHECK(harness.Exchange(Message("ABTS")) == Message("AATS"));
    }
    CHECK(harness.observed.ended.size() == rowsBefore + 1);
    CHECK_FALSE(std::filesystem::exists(harness.folder / "NC/4.nc.part"));
    // Numbers that are there do no harm, whole or not.
    CHECK(stores("1"));
    CHECK(stores("2"));
    CHECK(stores("old"));
    CHECK(asksToStore("4") == Message("AAAK03"));
    // The first two are an hour old, the third is not.
    harness.Wait(21min);
    CHECK(stores("4"));
    CHECK(stores("5"));
    CHECK(asksToStore("6") == Message("AAAK03"));
    CHECK(std::ranges::count(harness.observed.ended, TransferOutcome::Refused, &TransferRecord::outcome) == 2);
    harness.settings.newFilesPerHour = 0;
    CHECK(stores("6"));
}
