#include "harness/ProtocolHarness.h"
#include "harness/Transcript.h"
#include "protocol/TarvinApp.h"

#include <doctest/doctest.h>

using namespace tarvin;
using namespace tarvin::test;

namespace {

using Harness = ProtocolHarness<TarvinApp>;

// A message whose checksum is wrong.
std::string Wrong(const std::string& text) {
    std::string message = Message(text);
    message[text.size()] = message[text.size()] == 'x' ? 'y' : 'x';
    return message;
}

std::string Line(int number) {
    return "ABADN" + std::to_string(number);
}

void TakeToSendChecksums(Harness& harness) {
    harness.settings.sendsChecksums = 1;
}

const std::string acknowledge = Message("AAAK");
const std::string cannotRead = Message("AAAK01");
const std::string cannotGoOn = Message("AAAK03");

}

TEST_CASE("IncomingCheck: eight different right messages show that the controller sends checksums, eight wrong ones "
          "that not") {
    Harness harness;
    harness.settings.incomingCheck = incomingCheckOff;
    const auto isTaken = [&] { return harness.settings.sendsChecksums != 0; };
    harness.Exchange(Message("ABST1"));
    // The same text may be right by chance each time, and a link test holds no data.
    for (int count = 0; count < 20; ++count)
        harness.Exchange(Message(Line(1)) + Message("ABAK"));
    CHECK_FALSE(isTaken());
    for (int line = 2; line <= 7; ++line) {
        CHECK_FALSE(isTaken());
        harness.Exchange(Wrong(Line(line)) + Message(Line(line)));
    }
    CHECK_FALSE(isTaken());
    harness.Exchange(Wrong(Line(8)) + Message(Line(8)));
    CHECK(isTaken());
    for (int line = 0; line < 7; ++line)
        harness.Exchange(Wrong(Line(line)));
    CHECK(isTaken());
    harness.Exchange(Message(Line(1)));
    for (int line = 0; line < 7; ++line)
        harness.Exchange(Wrong(Line(line)));
    CHECK(isTaken());
    harness.Exchange(Wrong(Line(0)));
    CHECK_FALSE(isTaken());
}

TEST_CASE("IncomingCheck: a checksum counts the characters that print, or all bytes behind the line feed") {
    Harness harness;
    TakeToSendChecksums(harness);
    CHECK(harness.Exchange("\n" + Message("ABST1")) == acknowledge);
    const std::string withTab = "ABADN1\tX1";
    CHECK(harness.Exchange("\n" + Message(withTab)) == acknowledge);
    std::string printable = Message("ABADN1X1");
    printable.insert(6, "\t");
    CHECK(harness.Exchange("\n" + printable) == acknowledge);
    CHECK(harness.Exchange(Wrong(withTab)) == cannotGoOn);
}

TEST_CASE("TarvinApp: a damaged message of an upload does what the setting says") {
    struct Case {
        const char* name;
        std::int32_t check;
        std::string arrives;
        std::string answers;
        TransferState state;
        std::int64_t damaged;
    };
    const std::string noise = "*7N?\r";
    const std::string good = Message("ABADN2");
    const std::string bad = Wrong("ABADN2");
    const Case cases[] = {
        {"off", incomingCheckOff, bad + noise + good, acknowledge + acknowledge, TransferState::Uploading, 2},
        {"end", incomingCheckEnd, bad + good, cannotGoOn, TransferState::UploadErrors, 1},
        {"end, another value", 77, bad, cannotGoOn, TransferState::UploadErrors, 1},
        {"end, no code", incomingCheckEnd, noise, cannotGoOn, TransferState::UploadErrors, 1},
        {"end, the end", incomingCheckEnd, Wrong("ABEF"), cannotGoOn, TransferState::UploadErrors, 1},
        {"end, a request", incomingCheckEnd, Wrong("ABSE7"), cannotRead, TransferState::DownloadErrors, 1},
        {"wait, one", incomingCheckRepeat, bad + good, acknowledge, TransferState::Uploading, 1},
        {"wait, two", incomingCheckRepeat, bad + noise + good, acknowledge, TransferState::Uploading, 2},
        {"wait, two and two", incomingCheckRepeat, bad + bad + good + bad + noise, acknowledge,
         TransferState::Uploading, 4},
        {"wait, three", incomingCheckRepeat, bad + noise + bad + good, cannotGoOn, TransferState::UploadErrors, 3},
        {"wait, a damaged code before a word of data", incomingCheckRepeat, Wrong("AB?DN2 (ABSENKEN)") + good,
         acknowledge, TransferState::Uploading, 1},
        {"damaged link test", incomingCheckEnd, Wrong("ABTS"), Message("AATS"), TransferState::LinkTest, 1},
    };
    for (const Case& each : cases) {
        CAPTURE(each.name);
        Harness harness;
        TakeToSendChecksums(harness);
        harness.settings.incomingCheck = each.check;
        harness.Exchange(Message("ABST1"));
        harness.Exchange(Message("ABADN1"));
        CHECK(harness.Exchange(each.arrives) == each.answers);
        CHECK(harness.State() == each.state);
        CHECK(harness.observed.transfer.Quality().damaged == each.damaged);
    }
}

TEST_CASE("TarvinApp: a damaged request is refused, and its number names nothing") {
    Harness harness;
    TakeToSendChecksums(harness);
    harness.folder.WriteFile("NC/7.nc", "N7\n");
    CHECK(harness.Exchange(Wrong("ABST7")) == cannotGoOn);
    CHECK(harness.State() == TransferState::UploadErrors);
    CHECK(harness.Exchange(Wrong("ABSE7")) == cannotRead);
    CHECK(harness.State() == TransferState::DownloadErrors);
    CHECK(harness.observed.transfer.Name().path.empty());
    CHECK(harness.folder.ReadFile("NC/7.nc") == "N7\n");
    CHECK(harness.observed.transfer.Quality() == LineQuality{1, 0, 0});
    // Of a controller that is not known to send checksums, everything counts.
    harness.settings.sendsChecksums = 0;
    CHECK(harness.Exchange(Wrong("ABSE7")) == acknowledge + Message("AADAN7"));
    CHECK(harness.observed.transfer.Quality().IsClean());
}

TEST_CASE("TarvinApp: errors of the driver make a message damaged, whatever its checksum") {
    Harness harness;
    harness.received.NoteErrors(2);
    CHECK(harness.Exchange(Message("ABST1")) == cannotGoOn);
    CHECK(harness.Exchange(Message("ABST1")) == acknowledge);
    CHECK(harness.Exchange(Message("ABADN1")) == acknowledge);
    harness.received.NoteErrors(3);
    CHECK(harness.Exchange(Message("ABADN2")) == cannotGoOn);
    CHECK(harness.State() == TransferState::UploadErrors);
    CHECK(harness.observed.transfer.Quality() == LineQuality{1, 0, 3});
}

TEST_CASE("TarvinApp: repeats of a download and of a held line are counted") {
    Harness harness;
    harness.folder.WriteFile("NC/7.nc", "N1\nN2\n");
    harness.Exchange(Message("ABSE7"));
    harness.Exchange(Message("ABNK"));
    harness.Exchange(Message("ABAK"));
    harness.sender.isHeldUp = true;
    CHECK(harness.Exchange(Message("ABAK")).empty());
    CHECK(harness.observed.transfer.Quality() == LineQuality{0, 2, 0});
}

TEST_CASE("TarvinApp: a damaged repeat on a held line leaves the answer that waits, and the repeat after it is one") {
    Harness harness;
    TakeToSendChecksums(harness);
    harness.settings.incomingCheck = incomingCheckRepeat;
    harness.Exchange(Message("ABST1"));
    CHECK(harness.Exchange(Message(Line(4))) == acknowledge);
    harness.sender.isHeldUp = true;
    CHECK(harness.Exchange(Message(Line(4)) + Wrong(Line(4)) + Message(Line(4))).empty());
    CHECK(harness.sender.dropCount == 0);
    harness.sender.isHeldUp = false;
    harness.Exchange(Message("ABEF"));
    CHECK(harness.folder.ReadFile("NC/1.nc") == "N4\r\n");
}

TEST_CASE("TarvinApp: the refusal of a damaged end is given again to the end that is repeated") {
    Harness harness;
    TakeToSendChecksums(harness);
    harness.Exchange(Message("ABST1") + Message(Line(1)));
    CHECK(harness.Exchange(Wrong("ABEF")) == cannotGoOn);
    CHECK(harness.Exchange(Message("ABEF")) == cannotGoOn);
}
