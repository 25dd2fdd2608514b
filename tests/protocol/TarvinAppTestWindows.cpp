#include "base/WindowsApi.h"
#include "harness/ProtocolHarness.h"
#include "harness/Transcript.h"
#include "protocol/TarvinApp.h"

#include <algorithm>

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

// Another program that has a file open.
class Holder {
public:
    Holder(const std::filesystem::path& path, DWORD access, DWORD sharing)
        : handle(::CreateFileW(path.c_str(), access, sharing, nullptr, OPEN_EXISTING, 0, nullptr)) {
        REQUIRE(handle != INVALID_HANDLE_VALUE);
    }
    ~Holder() { ::CloseHandle(handle); }
    Holder(const Holder&) = delete;
    Holder& operator=(const Holder&) = delete;

private:
    const HANDLE handle;
};

std::filesystem::path WholeFileIn(const std::filesystem::path& folder) {
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        if (entry.path().extension() == ".whole")
            return entry.path();
    }
    return {};
}

}

TEST_CASE("TarvinApp: the end of an upload waits two seconds for a program that holds the older file") {
    for (const bool isReleased : {true, false}) {
        CAPTURE(isReleased);
        ProtocolHarness<TarvinApp> harness;
        harness.folder.WriteFile("NC/7.nc", "older");
        const auto older = harness.folder / "NC/7.nc";
        CHECK(harness.Exchange(Message("ABST7") + Message("ABADN1")) == Message("AAAK") + Message("AAAK"));
        auto holder = std::make_unique<Holder>(older, GENERIC_READ, FILE_SHARE_READ);
        CHECK(harness.Exchange(Message("ABEF")).empty());
        for (int attempt = 0; attempt < 19; ++attempt)
            CHECK(harness.Wait(100ms).empty());
        // A repeated end gets the one answer that is still to come.
        CHECK(harness.Exchange(Message("ABEF")).empty());
        if (isReleased)
            holder.reset();
        CHECK(harness.Wait(100ms) == Message(isReleased ? "AAAK" : "AAAK03"));
        holder.reset();
        CHECK(harness.State() == (isReleased ? TransferState::UploadCompleted : TransferState::UploadErrors));
        CHECK(harness.folder.ReadFile("NC/7.nc") == (isReleased ? "N1\r\n" : "older"));
        const auto whole = WholeFileIn(harness.folder / "NC");
        CHECK(whole.empty() == isReleased);
        if (!isReleased)
            CHECK(harness.folder.ReadFile("NC/" + whole.filename().string()) == "N1\r\n");
        CHECK_FALSE(std::filesystem::exists(harness.folder / "NC/7.nc.part"));
        CHECK(harness.Exchange(Message("ABEF")) == Message(isReleased ? "AAAK" : "AAAK03"));
    }
}

TEST_CASE("TarvinApp: a link test is answered while the end of an upload waits, and the file stays whole") {
    ProtocolHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/7.nc", "older");
    harness.Exchange(Message("ABST7") + Message("ABADN1"));
    const Holder holder(harness.folder / "NC/7.nc", GENERIC_READ, FILE_SHARE_READ);
    CHECK(harness.Exchange(Message("ABEF")).empty());
    CHECK(harness.Exchange(Message("ABTS")) == Message("AATS"));
    CHECK(harness.Wait(1h).empty());
    CHECK_FALSE(WholeFileIn(harness.folder / "NC").empty());
}

TEST_CASE("TarvinApp: an upload is refused at its start if the older file cannot be replaced") {
    ProtocolHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/7.nc", "older");
    {
        const Holder holder(harness.folder / "NC/7.nc", GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE);
        CHECK(harness.Exchange(Message("ABST7")) == Message("AAAK03"));
        CHECK(harness.State() == TransferState::UploadCouldNotOpen);
    }
    ::SetFileAttributesW((harness.folder / "NC/7.nc").c_str(), FILE_ATTRIBUTE_READONLY);
    CHECK(harness.Exchange(Message("ABST7")) == Message("AAAK03"));
    ::SetFileAttributesW((harness.folder / "NC/7.nc").c_str(), FILE_ATTRIBUTE_NORMAL);
    CHECK(harness.Exchange(Message("ABST7")) == Message("AAAK"));
    // No other program opens the file while it arrives.
    CHECK(::CreateFileW((harness.folder / "NC/7.nc.part").c_str(), GENERIC_READ,
                        FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0,
                        nullptr) == INVALID_HANDLE_VALUE);
}

TEST_CASE("TarvinApp: a file that another program is writing is not sent") {
    ProtocolHarness<TarvinApp> harness;
    harness.folder.WriteFile("NC/7.nc", "N1\n");
    {
        const Holder writer(harness.folder / "NC/7.nc", GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE);
        CHECK(harness.Exchange(Message("ABSE7")) == Message("AAAK01"));
        CHECK(ToUtf8(harness.observed.transfer.Reason()) == "another program is writing it");
    }
    CHECK(harness.Exchange(Message("ABSE7")) == Message("AAAK") + Message("AADAN1"));
}
