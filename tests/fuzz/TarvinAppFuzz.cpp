// Feeds TarvinApp with bytes in any cut, moves the clock between them, and lets calls to the disk fail. The input
// begins with a byte of settings. Of the others those below 28 are commands, as in TakeByte; the rest arrives on the
// line.

#include "fuzz/FuzzedDisk.h"
#include "harness/ProtocolHarness.h"
#include "protocol/TarvinApp.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <sstream>

using namespace tarvin;
using namespace tarvin::test;
using namespace std::chrono_literals;

namespace {

using Harness = ProtocolHarness<TarvinApp, HeldSender>;

char ChecksumOf(std::string_view text) {
    unsigned sum = 0;
    for (const char character : text)
        sum += static_cast<unsigned char>(character);
    unsigned missing = (128 - sum % 128) % 128;
    if (missing <= 32)
        missing += 64;
    return static_cast<char>(missing - 1);
}

std::string Framed(const std::string& text) {
    return text + ChecksumOf(text) + '\r';
}

bool IsRight(std::string_view characters) {
    return !characters.empty() && characters.back() == ChecksumOf(characters.substr(0, characters.size() - 1));
}

bool Holds(const std::string& text, std::string_view code) {
    return text.find(code) != std::string::npos;
}

// The file that a request names.
std::string RequestedFile(std::string text) {
    text.erase(0, 4);
    text.erase(0, std::min(text.find_first_not_of('0'), text.size()));
    return text.substr(0, text.empty() ? 0 : text.size() - 1) + ".nc";
}

// A message that has arrived whole, and what it met.
struct Arrival {
    std::string text;
    TransferState before;
    bool wasCompleting = false;
    bool mayBeDamaged = false;
    std::string answer;
};

class Conversation {
public:
    explicit Conversation(std::uint8_t choice) {
        harness.folder.WriteFile("NC/1.nc", "N1\r\nN2\n\nN3");
        harness.folder.WriteFile("NC/2.nc", "N1\r\n");
        harness.settings.transmitDelaySeconds = (choice & 1) != 0 ? 1 : 0;
        harness.settings.incomingCheck = choice >> 1 & 3;
        harness.settings.sendsChecksums = choice >> 3 & 1;
        harness.settings.replacedFilesKept = (choice & 16) != 0 ? 1 : 5;
        arrivesJoined = (choice & 32) != 0;
        disk.emplace(harness.folder / "NC");
    }

    // Takes the first bytes of the input. Requires an input that is not empty.
    void TakeByte(std::string_view& input) {
        const auto byte = static_cast<std::uint8_t>(input.front());
        input.remove_prefix(1);
        const std::string_view values = input.substr(0, 3);
        switch (byte) {
        case '\r':
            Append("\r");
            if (!arrivesJoined)
                Deliver();
            break;
        case 16:
        case 17:
            Wait(byte == 16 ? 2000ms : 100ms);
            break;
        case 18:
            if (values.size() == 3)
                disk->AddFault(static_cast<std::uint8_t>(values[0]), static_cast<std::uint8_t>(values[1]),
                               static_cast<std::uint8_t>(values[2]));
            input.remove_prefix(values.size());
            break;
        case 19:
        case 20:
            LoseTransfer(byte == 19);
            break;
        case 21:
            harness.sender.Hold();
            LoseTrack();
            break;
        case 22:
            harness.sender.Release();
            break;
        case 23:
            harness.received.NoteErrors(1);
            hasDriverErrors = true;
            break;
        case 24:
            disk->ClearFaults();
            break;
        case 25:
            RemoveParts();
            break;
        case 26:
            Append(std::string(1, ChecksumOf(Printable(line))) + '\r');
            if (!arrivesJoined)
                Deliver();
            break;
        default:
            if (byte < 28)
                Deliver();
            else
                Append(std::string(1, static_cast<char>(byte)));
        }
    }

    // Whatever has happened, a controller can go on.
    void End() {
        disk->ClearFaults();
        harness.sender.Release();
        Append("\r");
        Deliver();
        Wait(3000ms);
        Require(Holds(harness.Exchange(Framed("ABTS")), Framed("AATS")), "a link test is answered");
        disk->Allow("9.nc");
        Require(harness.Exchange(Framed("ABST9")) == Framed("AAAK"), "a good request is accepted");
        Require(harness.Exchange(Framed("ABADN1")) == Framed("AAAK"), "a good line is stored");
        disk->NoteContent("9.nc", "N1\r\n");
        Require(harness.Exchange(Framed("ABEF")) == Framed("AAAK"), "a good upload is completed");
        Require(disk->Read("9.nc") == "N1\r\n", "a completed upload is on the disk");
        disk->CheckFiles(knowsContents);
    }

private:
    static std::string Printable(const std::string& bytes) {
        std::string text;
        std::copy_if(bytes.begin(), bytes.end(), std::back_inserter(text),
                     [](char byte) { return byte >= 32 && byte < 127; });
        return text;
    }

    Transfer& Its() { return harness.observed.transfer; }

    void Append(const std::string& bytes) {
        arrival += bytes;
        line = bytes.ends_with('\r') ? "" : line + bytes;
        // The line drops the content of a full buffer.
        if (harness.received.Room().size() <= arrival.size()) {
            harness.received.Clear();
            arrival.clear();
            line.clear();
            begun.clear();
        }
    }

    void Deliver() {
        const std::string bytes = std::exchange(arrival, {});
        const auto ends = std::count(bytes.begin(), bytes.end(), '\r');
        const std::string whole = begun + bytes;
        begun = whole.substr(whole.rfind('\r') + 1);
        const std::string raw = ends == 1 ? whole.substr(0, whole.find('\r')) : "";
        Arrival one = {Printable(raw), Its().State(), Its().IsCompleting(), hasDriverErrors, {}};
        const bool isWrong = !IsRight(one.text) && !IsRight(raw.substr(raw.starts_with('\n') ? 1 : 0));
        one.mayBeDamaged = one.mayBeDamaged || isWrong;
        const bool isRefused = hasDriverErrors || (isWrong && harness.settings.sendsChecksums != 0);
        hasDriverErrors = hasDriverErrors && ends == 0;
        if (ends > 1)
            LoseTrack();
        std::istringstream messages(whole);
        for (std::string each; std::getline(messages, each, '\r');)
            if (Holds(Printable(each), "ABST") && (ends > 1 || !isRefused))
                disk->Allow(RequestedFile(Printable(each)));
        if (isTracked && Holds(one.text, "ABEF"))
            disk->NoteContent(name, stored);
        const bool isHeld = harness.sender.IsHeld();
        one.answer = harness.Exchange(bytes);
        Require(one.answer.empty() || one.answer.back() == '\r', "answers are whole frames");
        if (ends == 1 && !isHeld && !one.text.empty())
            CheckAnswer(one);
        Check(one.before);
    }

    // The program answers, and knows which lines it has acknowledged.
    void CheckAnswer(const Arrival& one) {
        const bool isUploading = one.before == TransferState::Uploading;
        const bool isData = isUploading && Holds(one.text, "ABAD");
        const bool awaitsRepeat =
            isUploading && one.mayBeDamaged && harness.settings.incomingCheck == incomingCheckRepeat;
        const bool isRequest =
            Holds(one.text, "ABTS") || Holds(one.text, "ABST") || (Holds(one.text, "ABSE") && !Its().IsPending());
        if ((isRequest || isData) && !awaitsRepeat)
            Require(!one.answer.empty(), "a question is answered");
        if (one.before == TransferState::Downloading && !Its().IsPending())
            Require(!one.answer.empty(), "a controller that waits for a line is answered");
        if (isData && isTracked && one.answer == Framed("AAAK") && Its().State() == TransferState::Uploading) {
            const std::string behind = one.text.substr(one.text.find("ABAD") + 4);
            const std::string payload = behind.substr(0, behind.empty() ? 0 : behind.size() - 1);
            stored += payload.empty() ? "" : payload + "\r\n";
        }
        const bool hasBegun = !isData && Holds(one.text, "ABST") && Its().State() == TransferState::Uploading;
        if (hasBegun && one.answer.ends_with(Framed("AAAK"))) {
            name = RequestedFile(one.text);
            stored.clear();
            isTracked = true;
        }
    }

    void Wait(std::chrono::milliseconds duration) {
        const TransferState before = Its().State();
        for (auto passed = 0ms; passed < duration; passed += 100ms) {
            const std::string sent = harness.Wait(100ms);
            Require(sent.empty() || sent.back() == '\r', "answers are whole frames");
        }
        Check(before);
    }

    // As the engine does it: for a link that is lost, and for a user who resets it.
    void LoseTransfer(bool isLinkLost) {
        const TransferState before = Its().State();
        harness.sender.DropUnsent();
        harness.protocol.Abandon();
        const bool wasUnderWay = Its().EndWithErrors(u"the fuzzer ends it");
        if (wasUnderWay && isLinkLost)
            harness.protocol.OnTransferLost();
        Check(before);
    }

    // What the program stores from now on is not known here, so only files of other names are checked.
    void LoseTrack() {
        isTracked = false;
        knowsContents = false;
    }

    void RemoveParts() {
        isTracked = false;
        for (const auto& each : std::filesystem::directory_iterator(harness.folder / "NC"))
            if (each.path().extension() == ".part")
                std::filesystem::remove(each.path());
    }

    void Check(TransferState before) {
        const bool isUploading = Its().State() == TransferState::Uploading;
        Require(Its().IsStoring() == isUploading, "a file is open while an upload runs, and only then");
        Require(Its().IsUnderWay() || Its().Bar().position == 0, "no bar stands without a transfer");
        if (isTracked && isUploading)
            Require(disk->Read(name + ".part").starts_with(stored), "acknowledged lines are on the disk");
        if (isTracked && !isUploading && before == TransferState::Uploading)
            CheckEnd();
        disk->CheckFiles(knowsContents);
        isTracked = isTracked && isUploading;
    }

    void CheckEnd() {
        const bool isCompleted = !harness.observed.ended.empty() &&
                                 harness.observed.ended.back().outcome == TransferOutcome::Completed &&
                                 harness.observed.ended.back().direction == TransferDirection::FromMachine;
        if (isCompleted)
            Require(stored.empty() ? disk->Has(name) : disk->Read(name) == stored, "a completed upload is on the disk");
        const auto copies = disk->Copies(name);
        Require(stored.empty() || std::any_of(copies.begin(), copies.end(),
                                              [this](const std::string& copy) { return copy.starts_with(stored); }),
                "a failed upload leaves its acknowledged lines");
    }

    Harness harness;
    std::optional<FuzzedDisk> disk;
    bool arrivesJoined = false;
    std::string arrival; // not delivered yet
    std::string line;    // since the last carriage return
    std::string begun;   // delivered, and no message yet
    bool hasDriverErrors = false;
    bool knowsContents = true;
    bool isTracked = false; // an upload runs, and its lines are known
    std::string name;
    std::string stored;
};

}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    Conversation conversation(input.empty() ? 0 : data[0]);
    input.remove_prefix(std::min<std::size_t>(input.size(), 1));
    while (!input.empty())
        conversation.TakeByte(input);
    conversation.End();
    return 0;
}
